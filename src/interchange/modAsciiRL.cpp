#include "interchange/modAsciiRL.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "interchange/FileWrite.h"
#include "interchange/TextFile.h"
#include "rules/modMath.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modToolsB.h"

namespace qvrl {

namespace {

constexpr std::string_view kEol = "\r\n";
// The dead load reader has always used this factor, not the one passed to it.
constexpr double kDeadLoadFactor = 10000.0;
// Internal qb of a file that has no qb field yet.
constexpr double kOldFileQb = 0.5 * 1.0 / 10000;
constexpr int16_t kWrittenVersion = 4;
constexpr int32_t kInputPastEnd = 62;

constexpr std::string_view kCommentVersion = "@VERSION Vers CtrlNorm";
constexpr std::string_view kCommentCodes = "@SELECTCODES";
constexpr std::string_view kCommentTown = "@TOWN            AGS";
constexpr std::string_view kCommentWind =
    "@WINDLOAD        Norm        q0          h         wz        cat         qb";
constexpr std::string_view kCommentSnow = "@SNOWLOAD        Norm        s0          h         sz";
constexpr std::string_view kCommentLive =
    "@LIVELOAD        Norm         p         p0      P0sgl  mit Zeile/Kategorie/Nutzung/Bsp        pAdd mit "
    "Zeile/Kategorie/Nutzung/Bsp";
constexpr std::string_view kCommentDead = "@DEADLOAD        Norm        g0      Descr    g1(opt)  Descr(opt)";

// Lines a rewrite leaves out because it writes their blocks anew; tested on
// the upper-cased line, by its first letters only.
constexpr std::string_view kRoofDropped[] = {
    "@WINDLOAD", "@SNOWLOAD", "@TOWN", "@VERSION", "VERSION", "@SELECTCODES", "SELECTCODES"};
constexpr std::string_view kLiveDropped[] = {"@LIVELOAD", "@VERSION", "VERSION", "@SELECTCODES", "SELECTCODES"};

// Characters, not bytes, as the lengths of the line rules count them.
size_t CharCount(std::string_view s) {
    return static_cast<size_t>(
        std::count_if(s.begin(), s.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

size_t FirstCharBytes(std::string_view s) {
    if (s.empty()) return 0;
    size_t n = 1;
    while (n < s.size() && (static_cast<unsigned char>(s[n]) & 0xC0) == 0x80) ++n;
    return n;
}

bool StartsWithAny(std::string_view s, std::span<const std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view w) { return s.substr(0, w.size()) == w; });
}

// ---------------------------------------------------------------- reading

int16_t IntegerField(std::string& line) { return CInt(NextField(line, false)); }
double NumberField(std::string& line) { return CDbl(NextField(line, false)); }
double ScaledField(std::string& line, double scale) { return fp::Mul(NumberField(line), scale); }
std::string TextField(std::string& line) { return CStr(NextField(line, false)); }

// The lines of an existing file; none for a file that is missing.
std::vector<std::string> LinesToRead(const std::string& fileName) {
    if (!FileExists(fileName)) return {};
    std::vector<std::string> lines = ReadTextLines(fileName).lines;
    if (lines.empty()) Raise(kInputPastEnd, fileName, "Input past end of file");
    return lines;
}

void ReadVersion(std::string& line, int16_t& ctrlNorm) {
    State().FileVersion = IntegerField(line);
    ctrlNorm = -99;
    if (!Trim(line).empty()) ctrlNorm = IntegerField(line);
}

void ReadTown(std::string& line, TownRec& town) {
    town.AGS = TextField(line);
    const size_t nul = town.AGS.find('\0');
    if (nul != std::string::npos) town.AGS.resize(nul);
}

void ReadWind(std::string& line, WindLoadRec& wind, double scale) {
    wind.Norm = IntegerField(line);
    wind.q0 = ScaledField(line, scale);
    wind.h = NumberField(line);
    wind.wz = IntegerField(line);
    wind.cat = IntegerField(line);
    if (State().FileVersion >= 3) wind.qb = NumberField(line);
    else wind.qb = kOldFileQb;
}

void ReadSnow(std::string& line, SnowLoadRec& snow, double scale) {
    snow.Norm = IntegerField(line);
    snow.s0 = ScaledField(line, scale);
    snow.h = NumberField(line);
    snow.sz = IntegerField(line);
}

void ReadLive(std::string& line, LiveLoadRec& live, double scale) {
    live.Norm = IntegerField(line);
    live.p = ScaledField(line, scale);
    live.Wert = ScaledField(line, scale);
    if (State().FileVersion >= 2) live.Wert2 = NumberField(line);
    else live.Wert2 = 0.0;
    live.Zeile = TextField(line);
    live.Unterkategorie = TextField(line);
    live.Nutzung = TextField(line);
    live.Langtext = TextField(line);
    live.pAdd = NumberField(line);
    live.ZeileAdd = TextField(line);
    live.KategorieAdd = TextField(line);
    live.NutzungAdd = TextField(line);
    live.BspAdd = TextField(line);
}

void ReadDead(std::string& line, DeadLoadRec& dead) {
    dead.Norm = IntegerField(line);
    dead.g0 = ScaledField(line, kDeadLoadFactor);
    dead.Descr0 = TextField(line);
    dead.g1 = ScaledField(line, kDeadLoadFactor);
    dead.Descr1 = TextField(line);
    dead.g2 = ScaledField(line, kDeadLoadFactor);
    dead.Descr2 = TextField(line);
    if (State().FileVersion < 1) {
        // Files before version 1 had two pairs, the second being today's third.
        dead.g2 = dead.g1;
        dead.Descr2 = dead.Descr1;
        dead.g1 = 0.0;
        dead.Descr1.clear();
    }
}

// ---------------------------------------------------------------- writing

std::string Fixed(const Variant& value, int16_t width, int16_t decimals) {
    return NumberToFixedText(value, width, decimals);
}

struct BlockWriter {
    std::string out;
    bool withComments;
    double scale;
    // When set, every field written is noted here too.
    std::vector<WrittenField>* fields = nullptr;
    const char* record = "";

    void Comment(std::string_view text) {
        if (withComments) {
            out += text;
            out += kEol;
        }
    }
    void Note(const char* name, bool quoted, double value, int16_t width, int16_t decimals, const std::string& text) {
        // A fixed picture holds no "e": the text is the exponent form that replaces a number too wide for it.
        if (fields)
            fields->push_back({record, name, quoted, value, width, decimals, text,
                               quoted || text.find('e') == std::string::npos});
    }
    void Num(const char* name, const Variant& fileValue, double value, int16_t width, int16_t decimals) {
        const std::string text = Fixed(fileValue, width, decimals);
        Note(name, false, value, width, decimals, text);
        out += ' ';
        out += text;
    }
    void Int(const char* name, int16_t v) { Num(name, Variant(v), v, 10, 0); }
    void Plain(const char* name, double v, int16_t decimals) { Num(name, Variant(v), v, 10, decimals); }
    void Scaled(const char* name, double v) { Num(name, Variant(fp::Div(v, scale)), v, 10, 6); }
    void Quoted(const char* name, const std::string& text) {
        Note(name, true, 0.0, 0, 0, text);
        out += " '";
        out += text;
        out += '\'';
    }
    void End() { out += kEol; }

    void Version(int16_t ctrlNorm) {
        Comment(kCommentVersion);
        out += "VERSION ";
        out += Format(Variant(kWrittenVersion), "000");
        out += ' ';
        out += Format(Variant(ctrlNorm), "000");
        End();
    }
    void Codes(const std::string& selectCodes) {
        if (Trim(selectCodes).empty()) return;
        record = "";
        Comment(kCommentCodes);
        out += "SELECTCODES";
        Quoted("selectCodes", selectCodes);
        End();
    }
    void Town(const TownRec& town) {
        record = "town";
        Comment(kCommentTown);
        out += "TOWN    ";
        Quoted("AGS", town.AGS);
        End();
    }
    void Wind(const WindLoadRec& w) {
        record = "wind";
        Comment(kCommentWind);
        out += "WINDLOAD";
        Int("Norm", w.Norm);
        Scaled("q0", w.q0);
        Plain("h", w.h, 2);
        Int("wz", w.wz);
        Int("cat", w.cat);
        Plain("qb", w.qb, 0);  // no decimals and no scale: hosts read it this way
        End();
    }
    void Snow(const SnowLoadRec& s) {
        record = "snow";
        Comment(kCommentSnow);
        out += "SNOWLOAD";
        Int("Norm", s.Norm);
        Scaled("s0", s.s0);
        Plain("h", s.h, 2);
        Int("sz", s.sz);
        End();
    }
    void Live(const LiveLoadRec& l) {
        record = "live";
        Comment(kCommentLive);
        out += "LIVELOAD";
        Int("Norm", l.Norm);
        Scaled("p", l.p);
        Scaled("Wert", l.Wert);
        Plain("Wert2", l.Wert2, 6);
        Quoted("Zeile", l.Zeile);
        Quoted("Unterkategorie", l.Unterkategorie);
        Quoted("Nutzung", l.Nutzung);
        Quoted("Langtext", l.Langtext);
        Plain("pAdd", l.pAdd, 4);
        Quoted("ZeileAdd", l.ZeileAdd);
        Quoted("KategorieAdd", l.KategorieAdd);
        Quoted("NutzungAdd", l.NutzungAdd);
        Quoted("BspAdd", l.BspAdd);
        End();
    }
    void Dead(const DeadLoadRec& d) {
        record = "dead";
        Comment(kCommentDead);
        out += "DEADLOAD";
        Int("Norm", d.Norm);
        Scaled("g0", d.g0);
        Quoted("Descr0", d.Descr0);
        Scaled("g1", d.g1);
        Quoted("Descr1", d.Descr1);
        Scaled("g2", d.g2);
        Quoted("Descr2", d.Descr2);
        End();
    }
    void Verbatim(const std::string& line) {
        out += line;
        out += kEol;
    }
};

// The two passes that the roof and the live writer share. ownBlock writes the
// writer's block for a key of its own and says whether the key was one.
template <class OwnBlock>
void RewriteBlocks(std::vector<std::string>& lines, BlockWriter& w, int16_t ctrlNorm,
                          const std::string& selectCodes, std::span<const std::string_view> dropped,
                          OwnBlock ownBlock) {
    // VERSION and SELECTCODES go to the top, once for each old line. The key
    // is taken in place, which leaves indented comment lines left-trimmed.
    bool versionSeen = false, codesSeen = false;
    for (std::string& line : lines) {
        const std::string key = ExtractBlockKey(line, true);
        if (key == "VERSION") {
            w.Version(ctrlNorm);
            versionSeen = true;
        } else if (key == "SELECTCODES") {
            w.Codes(selectCodes);
            codesSeen = true;
        }
    }
    if (!versionSeen) w.Version(ctrlNorm);
    if (!codesSeen) w.Codes(selectCodes);

    for (std::string& line : lines) {
        if (StartsWithAny(UCase(line), dropped)) continue;
        const std::string key = ExtractBlockKey(line, true);
        if (ownBlock(key)) continue;
        // Data lines of other sessions' blocks go; comments and blank lines stay.
        if (Trim(line).empty() || line.front() == '@') w.Verbatim(line);
    }
}

}  // namespace

// ---------------------------------------------------------------- tokeniser

std::string ExtractBlockKey(std::string& line, bool keepLine) {
    const std::string copy = line;
    std::string key;
    if (CharCount(line) < 5) return key;
    line = LTrim(line);
    if (!line.empty() && line.front() == '@') return key;
    const int32_t p = InStr(line, " ");
    if (p > 0) {
        key = RTrim(std::string_view(line).substr(0, static_cast<size_t>(p)));
        line = LTrim(std::string_view(line).substr(static_cast<size_t>(p - 1))) + "   ";
    }
    // Commas separate fields as blanks do; quoted texts are not spared.
    std::replace(line.begin(), line.end(), ',', ' ');
    if (keepLine) line = copy;
    return UCase(key);
}

Variant NextField(std::string& line, bool keepLine) {
    const std::string copy = line;
    line = LTrim(line);
    if (!line.empty() && line.front() == '\'') return Variant(NextQuotedField(line, false));
    Variant result(int16_t{0});
    const int32_t p = InStr(line, " ");
    if (p > 0) {
        const std::string token = line.substr(0, static_cast<size_t>(p));
        std::replace(line.begin(), line.end(), '%', ' ');
        result = Variant(Val(token));
        line = LTrim(std::string_view(line).substr(static_cast<size_t>(p - 1)));
    }
    if (keepLine) line = copy;
    return result;
}

std::string NextQuotedField(std::string& line, bool keepLine) {
    const std::string copy = line;
    std::string result;
    if (CharCount(line) < 3) return result;
    line = LTrim(line);
    line.erase(0, FirstCharBytes(line));
    const int32_t p = InStr(line, "'");
    if (p > 0) {
        result = Trim(std::string_view(line).substr(0, static_cast<size_t>(p - 1)));
        line = LTrim(std::string_view(line).substr(static_cast<size_t>(p)));
    }
    if (keepLine) line = copy;
    return result;
}

void ConvertOldNorm(int16_t& norm) {
    if (State().FileVersion < 4 && norm == 53) norm = 211;
}

// ---------------------------------------------------------------- readers

void ReadRoofBlocks(const std::string& fileName, TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, double scale,
                    int16_t& ctrlNorm, std::string& selectCodes) {
    town = TownRec{};
    wind = WindLoadRec{};
    snow = SnowLoadRec{};
    std::vector<std::string> lines = LinesToRead(fileName);
    for (std::string& line : lines) {
        const std::string key = ExtractBlockKey(line, false);
        if (key == "VERSION") ReadVersion(line, ctrlNorm);
        else if (key == "SELECTCODES") selectCodes = NextQuotedField(line, false);
        else if (key == "TOWN") ReadTown(line, town);
        else if (key == "WINDLOAD") ReadWind(line, wind, scale);
        else if (key == "SNOWLOAD") ReadSnow(line, snow, scale);
    }
    ConvertOldNorm(wind.Norm);
    ConvertOldNorm(snow.Norm);
}

void ReadLiveBlocks(const std::string& fileName, LiveLoadRec& live, double scale, int16_t& ctrlNorm,
                    std::string& selectCodes) {
    live = LiveLoadRec{};
    try {
        std::vector<std::string> lines = LinesToRead(fileName);
        for (std::string& line : lines) {
            const std::string key = ExtractBlockKey(line, false);
            if (key == "VERSION") ReadVersion(line, ctrlNorm);
            else if (key == "SELECTCODES") selectCodes = NextQuotedField(line, false);
            else if (key == "LIVELOAD") ReadLive(line, live, scale);
        }
        ConvertOldNorm(live.Norm);
    } catch (const RuntimeError&) {
        // What was parsed stays; the host gets no error from a live read.
    }
}

void ReadDeadBlocks(const std::string& fileName, DeadLoadRec& dead, double /*scale*/, int16_t& ctrlNorm,
                    std::string& selectCodes) {
    dead = DeadLoadRec{};
    try {
        std::vector<std::string> lines = LinesToRead(fileName);
        for (std::string& line : lines) {
            const std::string key = ExtractBlockKey(line, false);
            if (key == "VERSION") ReadVersion(line, ctrlNorm);
            else if (key == "SELECTCODES") selectCodes = NextQuotedField(line, false);
            else if (key == "DEADLOAD") ReadDead(line, dead);
        }
        ConvertOldNorm(dead.Norm);
    } catch (const RuntimeError&) {
        // What was parsed stays; the host gets no error from a dead load read.
    }
}

// ---------------------------------------------------------------- writers

namespace {

std::string ComposeRoof(std::vector<std::string>& lines, const TownRec& town, const WindLoadRec& wind,
                        const SnowLoadRec& snow, bool withComments, double scale, int16_t ctrlNorm,
                        const std::string& selectCodes) {
    BlockWriter w{{}, withComments, scale, nullptr, ""};
    bool townDone = false, windDone = false, snowDone = false;
    RewriteBlocks(lines, w, ctrlNorm, selectCodes, kRoofDropped, [&](const std::string& key) {
        if (key == "TOWN") w.Town(town), townDone = true;
        else if (key == "WINDLOAD") w.Wind(wind), windDone = true;
        else if (key == "SNOWLOAD") w.Snow(snow), snowDone = true;
        else return false;
        return true;
    });
    if (!townDone) w.Town(town);
    if (!windDone) w.Wind(wind);
    if (!snowDone) w.Snow(snow);
    return std::move(w.out);
}

std::string ComposeLive(std::vector<std::string>& lines, const LiveLoadRec& live, bool withComments, double scale,
                        int16_t ctrlNorm, const std::string& selectCodes) {
    BlockWriter w{{}, withComments, scale, nullptr, ""};
    bool liveDone = false;
    RewriteBlocks(lines, w, ctrlNorm, selectCodes, kLiveDropped, [&](const std::string& key) {
        if (key != "LIVELOAD") return false;
        w.Live(live);
        liveDone = true;
        return true;
    });
    if (!liveDone) w.Live(live);
    return std::move(w.out);
}

std::string ComposeDead(const std::vector<std::string>& lines, const DeadLoadRec& dead, bool withComments,
                        double scale) {
    BlockWriter w{{}, withComments, scale, nullptr, ""};
    bool deadDone = false;
    // One pass: it runs after the roof or live writer of the same session and
    // keeps whatever that one wrote.
    for (const std::string& line : lines) {
        if (UCase(line).starts_with("@DEADLOAD")) continue;
        std::string probe = line;
        if (ExtractBlockKey(probe, true) == "DEADLOAD") {
            w.Dead(dead);
            deadDone = true;
        } else {
            w.Verbatim(line);
        }
    }
    if (!deadDone) w.Dead(dead);
    return std::move(w.out);
}

}  // namespace

BlockFileRewrite::BlockFileRewrite(const std::string& fileName) : file_(fileName) {
    // A missing or empty file counts as new.
    if (file_.Exists()) text_ = ReadTextLines(file_.Target());
}

void BlockFileRewrite::Take(std::string composed) {
    text_.lines = SplitLines(composed);
    composed_ = std::move(composed);
}

void BlockFileRewrite::Roof(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow,
                            bool withComments, double scale, int16_t ctrlNorm, const std::string& selectCodes) {
    Take(ComposeRoof(text_.lines, town, wind, snow, withComments, scale, ctrlNorm, selectCodes));
}

void BlockFileRewrite::Live(const LiveLoadRec& live, bool withComments, double scale, int16_t ctrlNorm,
                            const std::string& selectCodes) {
    Take(ComposeLive(text_.lines, live, withComments, scale, ctrlNorm, selectCodes));
}

void BlockFileRewrite::Dead(const DeadLoadRec& dead, bool withComments, double scale) {
    Take(ComposeDead(text_.lines, dead, withComments, scale));
}

void BlockFileRewrite::Commit() { file_.Commit(EncodeText(composed_, text_.encoding)); }

void WriteRoofBlocks(const std::string& fileName, const TownRec& town, const WindLoadRec& wind,
                     const SnowLoadRec& snow, bool withComments, double scale, int16_t ctrlNorm,
                     const std::string& selectCodes) {
    BlockFileRewrite rewrite(fileName);
    rewrite.Roof(town, wind, snow, withComments, scale, ctrlNorm, selectCodes);
    rewrite.Commit();
}

void WriteLiveBlocks(const std::string& fileName, const LiveLoadRec& live, bool withComments, double scale,
                     int16_t ctrlNorm, const std::string& selectCodes) {
    BlockFileRewrite rewrite(fileName);
    rewrite.Live(live, withComments, scale, ctrlNorm, selectCodes);
    rewrite.Commit();
}

void WriteDeadBlocks(const std::string& fileName, const DeadLoadRec& dead, bool withComments, double scale,
                     int16_t /*ctrlNorm*/, const std::string& /*selectCodes*/) {
    BlockFileRewrite rewrite(fileName);
    rewrite.Dead(dead, withComments, scale);
    rewrite.Commit();
}

std::vector<WrittenField> RoofFieldsWritten(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow,
                                            double scale, const std::string& selectCodes) {
    std::vector<WrittenField> fields;
    BlockWriter w{{}, false, scale, &fields, ""};
    w.Codes(selectCodes);
    w.Town(town);
    w.Wind(wind);
    w.Snow(snow);
    return fields;
}

std::vector<WrittenField> LiveFieldsWritten(const LiveLoadRec& live, double scale) {
    std::vector<WrittenField> fields;
    BlockWriter w{{}, false, scale, &fields, ""};
    w.Live(live);
    return fields;
}

std::vector<WrittenField> DeadFieldsWritten(const DeadLoadRec& dead, double scale) {
    std::vector<WrittenField> fields;
    BlockWriter w{{}, false, scale, &fields, ""};
    w.Dead(dead);
    return fields;
}

}  // namespace qvrl
