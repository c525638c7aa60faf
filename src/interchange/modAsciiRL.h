#pragma once
// The block file the host and the component exchange: one tokeniser, three
// readers and three writers sharing one number format. Loads are held in
// kN/m² and stand in the file divided by the scale factor (10000 in every
// session, so the file holds kN/cm²).
//
// Files are read as UTF-8 when their bytes are valid UTF-8, else as
// Windows-1252, and are written back in the encoding read; a new file is
// UTF-8. Lines are written with CR LF. A rewrite replaces the file in one
// step, so a failure leaves the old file as it was, and it holds the file's
// lock from its read to its rename (interchange/FileWrite.h).

#include <cstdint>
#include <string>
#include <vector>

#include "interchange/FileWrite.h"
#include "interchange/Records.h"
#include "interchange/TextFile.h"
#include "support/vb.h"

namespace qvrl {

// Cuts the key word off a data line and returns it in upper case; "" for a
// comment line (which is left-trimmed even with keepLine), a line of fewer
// than five characters or one without a blank. The rest of the line gets three
// blanks appended and its commas turned into blanks.
std::string ExtractBlockKey(std::string& line, bool keepLine);
// The next field: a quoted string, else the numeric prefix of the token up to
// the next blank as a double, else the 16-bit integer 0 when no blank follows.
// Every "%" in the rest of the line becomes a blank.
Variant NextField(std::string& line, bool keepLine);
// The text between the apostrophe the line starts with (taken on trust) and
// the next one; "" when there is none.
std::string NextQuotedField(std::string& line, bool keepLine);

// A missing file reads as zero records and leaves ctrlNorm and selectCodes
// alone. ReadRoofBlocks raises what goes wrong (62 for an empty file, 6 for a
// field out of range, 13 for a quoted text where a number belongs); the live
// and dead readers stop quietly at the first error, keeping what they parsed.
void ReadRoofBlocks(const std::string& fileName, TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, double scale,
                    int16_t& ctrlNorm, std::string& selectCodes);
void ReadLiveBlocks(const std::string& fileName, LiveLoadRec& live, double scale, int16_t& ctrlNorm,
                    std::string& selectCodes);
// The dead loads are always read with the factor 10000, whatever scale says.
void ReadDeadBlocks(const std::string& fileName, DeadLoadRec& dead, double scale, int16_t& ctrlNorm,
                    std::string& selectCodes);

// The roof and live writers keep only comment and blank lines of the old file
// besides their own blocks; the dead writer keeps every line but its own.
void WriteRoofBlocks(const std::string& fileName, const TownRec& town, const WindLoadRec& wind,
                     const SnowLoadRec& snow, bool withComments, double scale, int16_t ctrlNorm,
                     const std::string& selectCodes);
void WriteLiveBlocks(const std::string& fileName, const LiveLoadRec& live, bool withComments, double scale,
                     int16_t ctrlNorm, const std::string& selectCodes);
// ctrlNorm and selectCodes are accepted for the common shape and ignored: the
// VERSION line stays as it stands.
void WriteDeadBlocks(const std::string& fileName, const DeadLoadRec& dead, bool withComments, double scale,
                     int16_t ctrlNorm = 0, const std::string& selectCodes = {});

// Several writers of one session as one rewrite: the file is locked and read
// once, each writer works on the text the one before it left, exactly as if
// it had read that from the file, and Commit replaces the file in one rename.
// So a roof session with dead loads never leaves new roof blocks beside old
// dead ones, and a second process's rewrite waits for this one's.
class BlockFileRewrite {
public:
    // Raises what FileRewrite raises for a file that cannot be rewritten.
    explicit BlockFileRewrite(const std::string& fileName);
    // The encoding the file gets: the one read, UTF-8 for a new file.
    TextEncoding Encoding() const { return text_.encoding; }
    void SetEncoding(TextEncoding encoding) { text_.encoding = encoding; }
    void Roof(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow, bool withComments,
              double scale, int16_t ctrlNorm, const std::string& selectCodes);
    void Live(const LiveLoadRec& live, bool withComments, double scale, int16_t ctrlNorm,
              const std::string& selectCodes);
    void Dead(const DeadLoadRec& dead, bool withComments, double scale);
    // After at least one writer; once.
    void Commit();

private:
    void Take(std::string composed);
    FileRewrite file_;
    TextLines text_;
    std::string composed_;
};

// One field as a writer puts it into the file, named as its record member
// ("wind", "q0"; the codes are record "", field "selectCodes").
struct WrittenField {
    std::string record;
    std::string field;
    bool quoted = false;
    double value = 0.0;  // a number, in the record's units
    int16_t width = 0, decimals = 0;
    std::string text;  // what the file gets
    // False for a number too wide for its field's fixed picture: the field
    // holds the exponent form cut to its width, which reads back as another
    // number (-1e100 in a field of 10 becomes 1e+100).
    bool fits = true;
};
std::vector<WrittenField> RoofFieldsWritten(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow,
                                            double scale, const std::string& selectCodes);
std::vector<WrittenField> LiveFieldsWritten(const LiveLoadRec& live, double scale);
std::vector<WrittenField> DeadFieldsWritten(const DeadLoadRec& dead, double scale);

// 53 becomes 211 in a file older than version 4.
void ConvertOldNorm(int16_t& norm);

}  // namespace qvrl
