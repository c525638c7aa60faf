#pragma once
// The live load catalogue: rows of the table liveload of qvrl.mdb by
// standard and kind, and the list of the standards it holds.
//
// The connection is State().LiveLoadDb, opened on the first read and kept.
// A file that cannot be opened gives empty lists; what the engine raises on
// an open file (a missing table or column) goes out to the caller.

#include <cstdint>
#include <string>
#include <vector>

#include "interchange/Records.h"

namespace qvrl {

namespace liveload {
inline constexpr int16_t ArtGrundwert = 0;  // basic loads
inline constexpr int16_t ArtZuschlag = 1;   // additional loads
inline constexpr int16_t AllNorms = -1;     // ReadLiveLoads: every row, by standard
inline constexpr std::size_t NormBezLength = 64;
}  // namespace liveload

// The query text ReadLiveLoads runs for norm and art.
std::string LiveLoadQuery(int16_t norm, int16_t art);

// Opens qvrl.mdb for the catalogue if it is not open; false when it cannot be.
bool InitLiveLoadMdb();

// Rows is replaced by the catalogue rows from index 1, element 0 a blank
// record. NormBez is the fixed string of 64 characters (blank padded), Null
// reads as "" and 0, and Kurztext falls back on the split Langtext.
void ReadLiveLoads(int16_t norm, int16_t art, std::vector<LiveLoadRec>& rows);

// The standards of the catalogue in Norm order, each once, from index 1 with
// a blank element 0; codes unknown to the catalogue are left out.
void LiveLoadNorms(std::vector<int16_t>& codes, std::vector<std::string>& names);

// The text of a fixed string: cut at the first NUL, trailing blanks dropped.
std::string FixedStringText(const std::string& fixed);

// Whether a row's additional load adds to its basic load; 78 and 211 keep it
// out of the sum on purpose.
bool SumsAdditionalLoad(int16_t norm);

// Rechenwert_p from Grundwert_p and Zuschlag_p under norm.
double LiveLoadDesignValue(int16_t norm, double grundwert, double zuschlag);

}  // namespace qvrl
