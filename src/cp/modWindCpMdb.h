#pragma once
// The store route of the coefficient selection: rows of the table cpe of
// qvrl.mdb or, while a file qvrlcpe.txt stands in the program folder, of
// that file alone, and the selection on them.
//
// It differs from the built-in route of modWindCp on purpose: keys outside a
// table are clamped to its end rows, every slot (the a slots and Ft too) is
// interpolated with InterpolateGuarded, Theta folds a full circle, and the
// flat roof interpolates with a true slope. Store rows are read anew for
// each request; the rows of the text file are kept while its size and time
// stamp stay as they were, and read anew once either changes.
//
// The connection to qvrl.mdb is State().CpeDb, opened once and kept; whether
// the text file is in force is State().UseCpeTxt, settled anew by each
// InitCpeMdb.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "cp/CpWindRecord.h"

namespace qvrl {

// Roof form codes of the column Typ.
namespace cpe {
inline constexpr int16_t TypWand = 1;
inline constexpr int16_t TypFlachdach = 2;
inline constexpr int16_t TypPultdach = 3;
inline constexpr int16_t TypSatteldach = 4;
inline constexpr int16_t TypWalmdach = 5;
inline constexpr int16_t TypInnen = 6;
}  // namespace cpe

// Fields of one line of qvrlcpe.txt, each closed by ";".
inline constexpr int kCpeTextFields = 70;

// Prepares the store; safe before every request. True when the text file is
// in force or qvrl.mdb is open. Never raises: a failure is traced and gives
// false, and the loaders then find no rows.
bool InitCpeMdb();

// The full name of the text file beside the component.
std::string CpeTextFileName();

// The loaders: Rows is replaced by the rows found, from index 1, element 0 a
// zero record; no rows leaves only element 0 (CpRowCount 0). What the engine
// raises (missing table or column) and what the text file raises (13 for an
// item that is no number, 62 for a file without a line) go out to the caller.
void Get_Wind_Cp_Satteldach_FromMdb(int16_t Norm, double Theta, CpWindRows& Rows);
void Get_Wind_Cp_Walmdach_FromMdb(int16_t Norm, CpWindRows& Rows);
void Get_Wind_Cp_Pultdach_FromMdb(int16_t Norm, double Theta, CpWindRows& Rows);
void Get_Wind_Cp_Flachdach_FromMdb(int16_t Norm, int16_t TrTyp, CpWindRows& Rows);
void Get_Wind_Cp_Wand_FromMdb(int16_t Norm, CpWindRows& Rows);
// Internal pressure rows come from qvrl.mdb only, even while the text file is
// in force; with no connection at all that is error 91.
void Get_Wind_Cp_Innen_FromMdb(int16_t Norm, int16_t TrTyp, double Theta, CpWindRows& Rows);

// The query texts of the loaders, as they reach the store.
std::string CpeQuerySatteldach(int16_t Norm, double Theta);
std::string CpeQueryWalmdach(int16_t Norm);
std::string CpeQueryPultdach(int16_t Norm, double Theta);
std::string CpeQueryFlachdach(int16_t Norm, int16_t TrTyp);
std::string CpeQueryWand(int16_t Norm);
std::string CpeQueryInnen(int16_t Norm, int16_t TrTyp, double Theta);

// The row direction the store is asked for. Unlike the built-in route these
// fold a full circle; a pent roof outside 0..180 has no rows.
double CpeThetaSatteldach(double Theta);
std::optional<double> CpeThetaPultdach(double Theta);
double CpeThetaInnen(double Theta);

// The store routes. Rec is overwritten; no rows give the zero record. A
// request value that is not a number is error 6.
void Get_Wind_Cp_Satteldach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
void Get_Wind_Cp_Walmdach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
void Get_Wind_Cp_Flachdach_Mdb(int16_t Norm, double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec);
void Get_Wind_Cp_Wand_Mdb(int16_t Norm, double HzuD, CpWindRecord& Rec);
void Get_Wind_Cp_Pultdach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
// Internal pressure by Mue. The rows of HzuD 0 alone count; the requested
// HzuD of the table object plays no part.
void Get_Wind_Cp_Innen_Mdb(int16_t Norm, int16_t TrTyp, double Theta, double Mue, CpWindRecord& Rec);

// The key scan of the store route over rows that ascend by key: a hit, the
// bracket (InterpolateGuarded on all slots of F..N and Ft, the key set to v),
// and outside the table the nearest end row. Flat says that a last row also
// closes a scan the bracket could not.
void CpeScanKey(const CpWindRows& mCpWind, double CpWindRecord::*key, double v, double Theta, bool Flat,
                CpWindRecord& Rec);
// Wall rows by falling HzuD, all four slots of A..E interpolated.
void CpeScanHzuD(const CpWindRows& mCpWind, double v, CpWindRecord& Rec);

// The text file. A line is read field by field (kCpeTextFields of them, each
// closed by ";"): blanks at the left are dropped; a missing ";" gives 0 and
// leaves the line as it is; an item whose line starts with a quote loses its
// first and last characters, and a ";" inside the quotes ends the field all
// the same; an empty item is 0; anything else must be a number in the
// machine's notation (error 13 otherwise). Integer fields round half to even.
void ParseCpeTextLine(std::string Line, CpWindRecord& Rec);
// All lines of the file, in file order, from index 1. A file without a line
// is error 62, a missing one 53.
void ReadCpeText(const std::string& FileName, CpWindRows& Rows);

// The text file's rows as last read (State().CpeText), and what they were
// read from.
struct CpeTextRows {
    std::string file;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
    CpWindRows rows;
};

}  // namespace qvrl
