#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "interchange/ExampleBlockFile.h"
#include "ErrorOf.h"
#include "TestEnv.h"
#include "interchange/FileWrite.h"
#include "interchange/TextFile.h"
#include "interchange/modAsciiRL.h"
#include "support/ModuleState.h"
#include "support/errors.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

const std::string kExample = test::kExampleBlockFile;

const std::string kWindComment = "@WINDLOAD        Norm        q0          h         wz        cat         qb";
const std::string kSnowComment = "@SNOWLOAD        Norm        s0          h         sz";
const std::string kDeadComment = "@DEADLOAD        Norm        g0      Descr    g1(opt)  Descr(opt)";
const std::string kLiveComment =
    "@LIVELOAD        Norm         p         p0      P0sgl  mit Zeile/Kategorie/Nutzung/Bsp        pAdd mit "
    "Zeile/Kategorie/Nutzung/Bsp";

struct Roof {
    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
};

Roof ExampleRoof() {
    Roof r;
    r.town.AGS = "05315000";
    r.wind = {.Norm = 1, .q0 = 0.5, .h = 10.0, .wz = 2, .cat = 1};
    r.snow = {.Norm = 1, .s0 = 0.75, .h = 250.0, .sz = 2};
    return r;
}

class BlockFile : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        dir_ = test::FreshFolder("blocks");
    }
    std::string File(const std::string& name = "roof.asc") const { return (dir_ / name).string(); }
    std::string Put(const std::string& text, const std::string& name = "roof.asc") const {
        test::WriteFile(dir_ / name, text);
        return File(name);
    }
    void WriteRoof(const std::string& f, const Roof& r, int16_t ctrlNorm = 1, const std::string& codes = "_1_3_",
                   bool withComments = true) {
        WriteRoofBlocks(f, r.town, r.wind, r.snow, withComments, 10000, ctrlNorm, codes);
    }
    // The version and codes the block readers report land in ctrl_ and codes_.
    Roof ReadRoof(const std::string& f) {
        Roof r;
        ReadRoofBlocks(f, r.town, r.wind, r.snow, 10000, ctrl_, codes_);
        return r;
    }
    LiveLoadRec Live(const std::string& f) {
        LiveLoadRec r;
        ReadLiveBlocks(f, r, 10000, ctrl_, codes_);
        return r;
    }
    DeadLoadRec Dead(const std::string& f, double factor = 10000) {
        DeadLoadRec r;
        ReadDeadBlocks(f, r, factor, ctrl_, codes_);
        return r;
    }
    std::vector<std::string> Listing() const {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(dir_)) names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    fs::path dir_;
    int16_t ctrl_ = 0;
    std::string codes_;
};

// ---------------------------------------------------------------- tokeniser

// Each tokeniser takes its token off the line; the line is what remains.
TEST(BlockTokeniser, TokensAndWhatRemains) {
    enum Fn { Key, Field, Quoted };
    const struct {
        Fn fn;
        std::string in;
        bool keep;
        Variant value;
        std::string after;
    } cases[] = {
        {Key, "VERSION 004 001", false, "VERSION", "004 001   "},
        {Key, "VERSION 004 001", true, "VERSION", "VERSION 004 001"},
        {Key, "abcd", false, "", "abcd"},                               // fewer than five characters
        {Key, "   @TOWN x", true, "", "@TOWN x"},                       // comments stay trimmed despite keepLine
        {Key, "snowload 1,0.00007,250,2", false, "SNOWLOAD", "1 0.00007 250 2   "},
        {Key, "WINDLOAD,1", false, "", "WINDLOAD 1"},                   // no blank: no key
        {Key, "WINDLOAD,1 2", false, "WINDLOAD,1", "2   "},             // the first separator has to be a blank
        {Key, "  TOWN   'a,b'  ", false, "TOWN", "'a b'     "},         // quoted commas go too
        {Key, " @\xC3\x84\xC3\x96", false, "", " @\xC3\x84\xC3\x96"},   // four characters in six bytes
        {Key, "  @\xC3\x84\xC3\x96", false, "", "@\xC3\x84\xC3\x96"},   // five characters
        {Key, "t\xC3\xA4st x", false, "T\xC3\x84ST", "x   "},
        {Field, "1 2", false, 1.0, "2"},
        {Field, "12.5% 'a%b'  ", false, 12.5, "'a b'  "},  // "%" goes from the rest, not from the token
        {Field, "5", false, int16_t{0}, "5"},               // no blank behind it: the last number is lost
        {Field, "   'ab c' 7", false, "ab c", "7"},
        {Field, "abc 1", false, 0.0, "1"},
        {Field, "&H1F x", false, 31.0, "x"},
        {Field, "-1.5e2 x", false, -150.0, "x"},
        {Field, "", false, int16_t{0}, ""},
        {Field, "1 2", true, 1.0, "1 2"},
        {Field, "'q' 1", true, "q", "1"},  // the quoted road ends before keepLine is looked at
        {Quoted, "'ab'", false, "ab", ""},
        {Quoted, "ab", false, "", "ab"},                 // fewer than three characters
        {Quoted, "'abc", false, "", "abc"},              // no closing apostrophe
        {Quoted, "x ab ' rest", false, "ab", "rest"},    // whatever comes first is dropped
        {Quoted, "'\xC3\x84" "b' z", false, "\xC3\x84" "b", "z"},
        {Quoted, "\xC3\x84" "bc'd", false, "bc", "d"},   // one character, not one byte
        {Quoted, "'  padded  '  next", false, "padded", "next"},
        {Quoted, "  'ab'", false, "ab", ""},
        {Quoted, "'ab' x", true, "ab", "'ab' x"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.fn << " " << c.in);
        std::string line = c.in;
        const Variant got = c.fn == Key     ? Variant(ExtractBlockKey(line, c.keep))
                            : c.fn == Field ? NextField(line, c.keep)
                                            : Variant(NextQuotedField(line, c.keep));
        EXPECT_EQ(got, c.value);
        EXPECT_EQ(line, c.after);
    }
}

// ---------------------------------------------------------------- the example file

TEST_F(BlockFile, ExampleWrittenByteForByteAndReadBack) {
    const std::string f = Put("");  // an empty file counts as new
    WriteRoof(f, ExampleRoof());
    EXPECT_EQ(test::ReadFile(f), kExample);

    const Roof r = ReadRoof(f);
    EXPECT_EQ(State().FileVersion, 4);
    EXPECT_EQ(ctrl_, 1);
    EXPECT_EQ(codes_, "_1_3_");
    Roof want = ExampleRoof();
    want.wind.q0 = 0.000050 * 10000;  // the file's text times the scale
    want.snow.s0 = 0.000075 * 10000;
    EXPECT_NE(want.snow.s0, 0.75);  // the round trip through kN/cm² is not exact
    EXPECT_EQ(r.town, want.town);
    EXPECT_EQ(r.wind, want.wind);
    EXPECT_EQ(r.snow, want.snow);

    WriteRoof(f, r, ctrl_, codes_);
    EXPECT_EQ(test::ReadFile(f), kExample);
}

TEST_F(BlockFile, RewriteTwiceDiffersOnlyInIndentedComments) {
    const std::string f = Put(
        "   @ my note\r\n"
        " @ab\r\n"
        "VERSION 004 000\r\n"
        "\r\n"
        "TOWN     'x'\r\n" +
        kDeadComment + "\r\n"
        "DEADLOAD 1 0.0001 'a' 0 '' 0 ''\r\n"
        "LIVELOAD 1 0 0 0 '' '' '' '' 0 '' '' '' ''\r\n"
        "FOO 1 2\r\n"
        "@ keep me\r\n"
        "WINDLOAD 3 0 0 0 0 0\r\n");
    WriteRoof(f, ExampleRoof());
    const std::string first = test::ReadFile(f);
    EXPECT_EQ(first,
              "@VERSION Vers CtrlNorm\r\n"
              "VERSION 004 001\r\n"
              "@SELECTCODES\r\n"
              "SELECTCODES '_1_3_'\r\n"
              "@ my note\r\n"
              "\r\n"
              "@TOWN            AGS\r\n"
              "TOWN     '05315000'\r\n" +
                  kDeadComment + "\r\n" +
                  "@ keep me\r\n" + kWindComment + "\r\n" +
                  "WINDLOAD          1   0.000050      10.00          2          1          0\r\n" + kSnowComment +
                  "\r\n" + "SNOWLOAD          1   0.000075     250.00          2\r\n");
    WriteRoof(f, ExampleRoof());
    EXPECT_EQ(test::ReadFile(f), first);
}

// ---------------------------------------------------------------- reading

struct RoofReadCase {
    const char* name;
    std::string text;
    int16_t version;
    int16_t ctrlNorm;  // the caller passes 7
    int16_t windNorm;
    double qb;
    int16_t snowNorm;
    double s0;
    int16_t sz;
};

TEST_F(BlockFile, RoofReadVariants) {
    const double oldQb = 0.5 * 1.0 / 10000;
    const RoofReadCase cases[] = {
        {"lower case keys, commas, no last blank", "version 4\r\nsnowload 1,0.00007,250,2\r\nwindload 1 0 0 0 0 3",
         4, -99, 1, 3.0, 1, 0.00007 * 10000, 2},
        {"version 2: no qb token", "VERSION 002 001\r\nWINDLOAD 1 0 0 0 0 7\r\n", 2, 1, 1, oldQb, 0, 0.0, 0},
        {"version 3: qb read, 53 becomes 211", "VERSION 003 000\r\nWINDLOAD 53 0 0 0 0 7\r\nSNOWLOAD 53 0 0 1\r\n",
         3, 0, 211, 7.0, 211, 0.0, 1},
        {"version 4 keeps 53", "VERSION 004 001\r\nWINDLOAD 53 0 0 0 0 7\r\nSNOWLOAD 53 0 0 1\r\n", 4, 1, 53, 7.0,
         53, 0.0, 1},
        {"a later line overwrites", "VERSION 4 1\r\nSNOWLOAD 1 1 1 1\r\nSNOWLOAD 3 0.0002 0 5\r\n", 4, 1, 0, 0.0, 3,
         0.0002 * 10000, 5},
        {"key with a comma and no blank is no data line", "VERSION 4 1\r\nSNOWLOAD,1 1 1 1\r\n", 4, 1, 0, 0.0, 0,
         0.0, 0},
        {"sz rounds half to even", "VERSION 4 1\r\nSNOWLOAD 1 0 0 2.5\r\n", 4, 1, 0, 0.0, 1, 0.0, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ResetModuleState();
        ctrl_ = 7;
        codes_ = "keep";
        const Roof r = ReadRoof(Put(c.text));
        EXPECT_EQ(State().FileVersion, c.version);
        EXPECT_EQ(ctrl_, c.ctrlNorm);
        EXPECT_EQ(codes_, "keep");
        EXPECT_EQ(r.wind.Norm, c.windNorm);
        EXPECT_EQ(r.wind.qb, c.qb);
        EXPECT_EQ(r.snow.Norm, c.snowNorm);
        EXPECT_EQ(r.snow.s0, c.s0);
        EXPECT_EQ(r.snow.sz, c.sz);
    }
}

TEST_F(BlockFile, VersionIsTakenAsEachLineComes) {
    // No VERSION line: the file is read by the version last read in this process.
    const std::string noVersion = Put("WINDLOAD 53 0.0001 5 1 1 7\r\n", "old.asc");
    ctrl_ = 7;
    Roof r = ReadRoof(noVersion);
    EXPECT_EQ(ctrl_, 7);
    EXPECT_EQ(r.wind.qb, 0.5 * 1.0 / 10000);  // a fresh process counts as version 0
    EXPECT_EQ(r.wind.Norm, 211);

    ReadRoof(Put("VERSION 004\r\n", "v4.asc"));
    EXPECT_EQ(ctrl_, -99);
    r = ReadRoof(noVersion);
    EXPECT_EQ(r.wind.qb, 7.0);
    EXPECT_EQ(r.wind.Norm, 53);

    // A VERSION line after the data: the data line saw the old version, the
    // conversion at the end the new one.
    ReadRoof(Put("VERSION 002\r\n", "v2.asc"));
    r = ReadRoof(Put("WINDLOAD 53 0 0 0 0 7\r\nVERSION 004 001\r\n", "late.asc"));
    EXPECT_EQ(r.wind.qb, 0.5 * 1.0 / 10000);
    EXPECT_EQ(r.wind.Norm, 53);
}

TEST_F(BlockFile, TownAndCodes) {
    struct Case {
        std::string text;
        std::string ags;
        std::string codes;
    } cases[] = {
        {"TOWN 05315000\r\n", "5315000", "x"},  // unquoted: the number's text
        {"TOWN     '05315000'\r\n", "05315000", "x"},
        {std::string("TOWN 'ab\0cd'\r\n", 14), "ab", "x"},
        {"TOWN 'O'Brien'\r\n", "O", "x"},
        {"TOWN\r\n", "", "x"},
        {"TOWN,'a'\r\n", "", "x"},
        {"SELECTCODES x_1_54_'\r\n", "", "_1_54_"},  // the first character goes whatever it is
        {"SELECTCODES '_1_3_\r\n", "", ""},          // no closing apostrophe
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        codes_ = "x";
        EXPECT_EQ(ReadRoof(Put("VERSION 4 1\r\n" + c.text)).town.AGS, c.ags);
        EXPECT_EQ(codes_, c.codes);
    }
}

TEST_F(BlockFile, RoofReadRaisesLiveAndDeadStopQuietly) {
    struct Case {
        std::string text;
        int32_t error;  // from ReadRoofBlocks
    } cases[] = {
        {"", 62},                                              // an empty file: input past its end
        {"VERSION 4 1\r\nWINDLOAD 40000 0 0 0 0 0\r\n", 6},    // 16-bit overflow
        {"VERSION 4 1\r\nSNOWLOAD 'abc' 0 0 0\r\n", 13},       // a quoted text where a number belongs
        {"VERSION 4 1\r\nSNOWLOAD 1 1e999 0 0\r\n", 6},        // beyond a double
        {"VERSION 4 1\r\nWINDLOAD 1 1e305 0 0 0 0\r\n", 6},    // times the scale
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string f = Put(c.text);
        EXPECT_EQ(test::ErrorOf([&] { ReadRoof(f); }), c.error);
        LiveLoadRec live;
        live.Norm = 9;
        DeadLoadRec dead;
        dead.Norm = 9;
        EXPECT_NO_THROW(ReadLiveBlocks(f, live, 10000, ctrl_, codes_));
        EXPECT_NO_THROW(ReadDeadBlocks(f, dead, 10000, ctrl_, codes_));
        EXPECT_EQ(live, LiveLoadRec{});
        EXPECT_EQ(dead, DeadLoadRec{});
    }
}

TEST_F(BlockFile, MissingFileReadsAsZeroAndCreatesNothing) {
    Roof r = ExampleRoof();
    int16_t ctrlNorm = 5;
    std::string codes = "_1_";
    ReadRoofBlocks(File("none.asc"), r.town, r.wind, r.snow, 10000, ctrlNorm, codes);
    EXPECT_EQ(r.town, TownRec{});
    EXPECT_EQ(r.wind, WindLoadRec{});
    EXPECT_EQ(r.snow, SnowLoadRec{});
    EXPECT_EQ(ctrlNorm, 5);
    EXPECT_EQ(codes, "_1_");
    EXPECT_TRUE(Listing().empty());
}

TEST_F(BlockFile, LiveBlock) {
    const std::string f = Put(
        "VERSION 004 001\r\n"
        "LIVELOAD 3 0.0003 0.0002 1.5 '1' 'A1' 'Wohnen' 'Decken, Wohnr\xC3\xA4ume' 0.5 '2' 'Z' 'Trennwand' "
        "'x%y'\r\n");
    LiveLoadRec live = Live(f);
    LiveLoadRec want;
    want.Norm = 3, want.p = 0.0003 * 10000, want.Wert = 0.0002 * 10000, want.Wert2 = 1.5;  // Wert2 not scaled
    want.Zeile = "1", want.Unterkategorie = "A1", want.Nutzung = "Wohnen";
    want.Langtext = "Decken  Wohnr\xC3\xA4ume";  // the comma became a blank
    want.pAdd = 0.5, want.ZeileAdd = "2", want.KategorieAdd = "Z", want.NutzungAdd = "Trennwand";
    want.BspAdd = "x y";  // "%" behind a numeric field
    EXPECT_EQ(live, want);
    EXPECT_EQ(ctrl_, 1);

    // Version 1 has no P0sgl; missing fields are 0 and "0".
    live = Live(Put("VERSION 001\r\nLIVELOAD 1 0.0003 0.0002 'r' 'k' 'n' 'b' 0.5\r\n", "v1.asc"));
    EXPECT_EQ(live.Wert2, 0.0);
    EXPECT_EQ(live.Zeile, "r");
    EXPECT_EQ(live.Langtext, "b");
    EXPECT_EQ(live.pAdd, 0.5);
    EXPECT_EQ(live.ZeileAdd, "0");
    EXPECT_EQ(live.BspAdd, "0");
    EXPECT_EQ(ctrl_, -99);

    // An error keeps what was parsed and skips the conversion of 53.
    EXPECT_EQ(Live(Put("VERSION 003\r\nLIVELOAD 53 0.0001 0.0002 0 'a'\r\n")).Norm, 211);
    live = Live(Put("VERSION 003\r\nLIVELOAD 53 0.0001 1e999 0 'a'\r\n"));
    EXPECT_EQ(live.Norm, 53);  // the error came before the conversion
    EXPECT_EQ(live.p, 0.0001 * 10000);
    EXPECT_EQ(live.Wert, 0.0);
    EXPECT_EQ(live.Zeile, "");
}

TEST_F(BlockFile, DeadBlock) {
    // The reader's factor is the literal 10000, whatever the caller passes;
    // the writer divides by the factor passed.
    const DeadLoadRec dead = Dead(Put("VERSION 004\r\nDEADLOAD 1 0.0001 'eins' 0.0002 'zwei' 0.0003 'drei'\r\n"), 1.0);
    DeadLoadRec small;
    small.g0 = 1.0;
    WriteDeadBlocks(Put("VERSION 004\r\n", "s.asc"), small, false, 100);
    EXPECT_EQ(test::ReadFile(File("s.asc")), "VERSION 004\r\nDEADLOAD          0   0.010000 ''   0.000000 ''   0.000000 ''\r\n");
    EXPECT_EQ(Dead(File("s.asc"), 100).g0, 0.01 * 10000);
    WriteDeadBlocks(Put("", "e.asc"), DeadLoadRec{}, true, 10000);  // an empty file counts as new
    EXPECT_EQ(test::ReadFile(File("e.asc")),
              kDeadComment + "\r\nDEADLOAD          0   0.000000 ''   0.000000 ''   0.000000 ''\r\n");
    EXPECT_EQ(dead, (DeadLoadRec{1, 0.0001 * 10000, "eins", 0.0002 * 10000, "zwei", 0.0003 * 10000, "drei"}));

    // Before version 1 the second pair is the third.
    ResetModuleState();
    EXPECT_EQ(Dead(Put("DEADLOAD 1 0.0001 'eins' 0.0002 'zwei' 0.0003 'drei'\r\n", "v0.asc")), (DeadLoadRec{1, 0.0001 * 10000, "eins", 0.0, "", 0.0002 * 10000, "zwei"}));

    // An apostrophe ends the description; the rest shifts until a quoted text
    // meets a number field and the read stops quietly.
    EXPECT_EQ(Dead(Put("VERSION 004\r\nDEADLOAD 1 0.0001 'Dach 'Nord'' 0.0002 'b' 0.0003 'c'\r\n", "apo.asc")),
              (DeadLoadRec{1, 0.0001 * 10000, "Dach", 0.0, "0.0002", 0.0, ""}));
}

// ---------------------------------------------------------------- writing

TEST_F(BlockFile, NumberFieldsOfTheWindBlock) {
    // qb is neither scaled nor given decimals, and the picture rounds half away
    // from zero: what comes back is the whole number written. A number too wide
    // for its fixed picture gets the exponent form cut to ten characters, which
    // may read back as another number; the writers say which fields did not fit.
    struct Case {
        double q0, h, qb;
        const char* line;
        double qbBack, hBack;
        bool fits;
    } cases[] = {
        {0.5, 10, 0.5, "WINDLOAD          1   0.000050      10.00          2          1          1", 1.0, 10, true},
        {0.5, 10, 0.49, "WINDLOAD          1   0.000050      10.00          2          1          0", 0.0, 10, true},
        {0.5, 10, 2.5, "WINDLOAD          1   0.000050      10.00          2          1          3", 3.0, 10, true},
        {1000.0 * 10000, 10, 0, "WINDLOAD          1   1.000e+3      10.00          2          1          0", 0.0, 10,
         false},
        {-0.25, 10, 0, "WINDLOAD          1  -0.000025      10.00          2          1          0", 0.0, 10, true},
        {0.5, 9999999.99, 0, "WINDLOAD          1   0.000050 9999999.99          2          1          0", 0.0,
         9999999.99, true},
        {0.5, -999999.99, 0, "WINDLOAD          1   0.000050 -999999.99          2          1          0", 0.0,
         -999999.99, true},
        {0.5, -1234567.5, 0, "WINDLOAD          1   0.000050  -1.235e+6          2          1          0", 0.0,
         -1235000, false},
        {0.5, -1e100, 0, "WINDLOAD          1   0.000050 1.000e+100          2          1          0", 0.0, 1e100,
         false},
        {0.5, 10, 1e10, "WINDLOAD          1   0.000050      10.00          2          1  1.000e+10", 1e10, 10,
         false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        Roof r = ExampleRoof();
        r.wind.q0 = c.q0;
        r.wind.h = c.h;
        r.wind.qb = c.qb;
        const std::string f = File();
        WriteRoof(f, r);
        const std::string text = test::ReadFile(f);
        EXPECT_NE(text.find(std::string("\r\n") + c.line + "\r\n"), std::string::npos) << text;
        const Roof back = ReadRoof(f);
        EXPECT_EQ(back.wind.qb, c.qbBack);
        EXPECT_EQ(back.wind.h, c.hBack);
        const auto fields = RoofFieldsWritten(r.town, r.wind, r.snow, 10000, "_1_3_");
        EXPECT_EQ(std::all_of(fields.begin(), fields.end(), [](const WrittenField& w) { return w.fits; }), c.fits);
        for (const auto& w : fields)
            if (w.record == "wind" && w.field == "h") {
                EXPECT_EQ(w.text, std::string(c.line).substr(31, 10));
            }
    }
    // 1.000e+3 reads back as 1000 kN/cm².
    Roof r = ExampleRoof();
    r.wind.q0 = 1000.0 * 10000;
    WriteRoof(File(), r);
    EXPECT_EQ(ReadRoof(File()).wind.q0, 1000.0 * 10000);
}

TEST_F(BlockFile, VersionAndCodesLines) {
    struct Case {
        int16_t ctrlNorm;
        std::string codes;
        std::string head;
    } cases[] = {
        {-99, "_1_3_", "@VERSION Vers CtrlNorm\r\nVERSION 004 -099\r\n@SELECTCODES\r\nSELECTCODES '_1_3_'\r\n@TOWN"},
        {0, "", "@VERSION Vers CtrlNorm\r\nVERSION 004 000\r\n@TOWN"},
        {1, "   ", "@VERSION Vers CtrlNorm\r\nVERSION 004 001\r\n@TOWN"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.head);
        WriteRoof(File(), ExampleRoof(), c.ctrlNorm, c.codes);
        EXPECT_EQ(test::ReadFile(File()).substr(0, c.head.size()), c.head);
    }
    WriteRoof(File("plain.asc"), ExampleRoof(), 1, "_1_", false);
    EXPECT_EQ(test::ReadFile(File("plain.asc")),
              "VERSION 004 001\r\nSELECTCODES '_1_'\r\nTOWN     '05315000'\r\n"
              "WINDLOAD          1   0.000050      10.00          2          1          0\r\n"
              "SNOWLOAD          1   0.000075     250.00          2\r\n");
}

TEST_F(BlockFile, RoofRewriteDropsForeignBlocksAndItsOwnListCaseBlind) {
    const std::string f = Put(
        "version 003\r\n"
        "VERSIONX foo\r\n"
        "VERSION 004 001\r\n"
        "selectcodes '_1_'\r\n"
        "@windload old comment\r\n"
        "@LiveLoad comment stays\r\n"
        "LIVELOAD 1 0 0 0 '' '' '' '' 0 '' '' '' ''\r\n"
        "  VERSION 004\r\n"
        "TOWN,'x'\r\n"
        "\t\r\n");
    WriteRoof(f, ExampleRoof());
    const std::string text = test::ReadFile(f);
    // Three lines had the key VERSION, one SELECTCODES: each gives a block, in their order.
    const std::string version = "@VERSION Vers CtrlNorm\r\nVERSION 004 001\r\n";
    const std::string head = version + version + "@SELECTCODES\r\nSELECTCODES '_1_3_'\r\n" + version;
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_EQ(text.substr(head.size()),
              "@LiveLoad comment stays\r\n@TOWN            AGS\r\nTOWN     '05315000'\r\n" + kWindComment +
                  "\r\nWINDLOAD          1   0.000050      10.00          2          1          0\r\n" +
                  kSnowComment + "\r\nSNOWLOAD          1   0.000075     250.00          2\r\n");
}

TEST_F(BlockFile, LiveRewriteDropsRoofBlocks) {
    const std::string f = Put(kExample + "DEADLOAD 1 0 '' 0 '' 0 ''\r\nLIVELOAD 1 0 0 0 'a' 'b' 'c' 'd' 0 'e' 'f' 'g' 'h'\r\n");
    LiveLoadRec live;
    live.Norm = 3, live.p = 2.0, live.Wert = 1.5, live.Wert2 = 2.0, live.pAdd = 0.8;
    live.Zeile = "1", live.Unterkategorie = "A1", live.Nutzung = "Wohnen", live.Langtext = "Dachgeschoss";
    live.ZeileAdd = "z";
    WriteLiveBlocks(f, live, true, 10000, 0, "_3_");
    EXPECT_EQ(test::ReadFile(f),
              "@VERSION Vers CtrlNorm\r\nVERSION 004 000\r\n@SELECTCODES\r\nSELECTCODES '_3_'\r\n"
              "@TOWN            AGS\r\n" +
                  kWindComment + "\r\n" + kSnowComment + "\r\n" + kLiveComment +
                  "\r\nLIVELOAD          3   0.000200   0.000150   2.000000 '1' 'A1' 'Wohnen' 'Dachgeschoss'     "
                  "0.8000 'z' '' '' ''\r\n");
    const LiveLoadRec back = Live(f);
    EXPECT_EQ(back.p, 0.0002 * 10000);
    EXPECT_EQ(back.Wert2, 2.0);
    EXPECT_EQ(back.Langtext, "Dachgeschoss");
    EXPECT_EQ(back.pAdd, 0.8);
}

TEST_F(BlockFile, RoofSessionWithDeadLoads) {
    const std::string f = Put(
        "VERSION 002 001\r\n" + kDeadComment + "\r\nDEADLOAD 1 0.0001 'alt' 0 '' 0 ''\r\nFOO bar\r\n");
    WriteRoof(f, ExampleRoof());
    const std::string afterRoof = test::ReadFile(f);
    EXPECT_NE(afterRoof.find(kDeadComment), std::string::npos);  // a stale comment stays
    EXPECT_EQ(afterRoof.find("DEADLOAD 1"), std::string::npos);
    EXPECT_EQ(afterRoof.find("FOO"), std::string::npos);

    DeadLoadRec dead;
    dead.Norm = 1, dead.g0 = 1.25, dead.Descr0 = "Ziegel", dead.g2 = 0.5, dead.Descr2 = "Sparren";
    WriteDeadBlocks(f, dead, true, 10000);
    const std::string dl = "DEADLOAD          1   0.000125 'Ziegel'   0.000000 ''   0.000050 'Sparren'\r\n";
    std::string expected = afterRoof;
    expected.erase(expected.find(kDeadComment), kDeadComment.size() + 2);
    EXPECT_EQ(test::ReadFile(f), expected + kDeadComment + "\r\n" + dl);

    // A second dead rewrite replaces its line in place and keeps all others.
    Put("VERSION 002 000\r\n  @DEADLOAD indented\r\n@deadload lower\r\nDEADLOAD 0\r\nFOO bar\r\n  x\r\n", "d.asc");
    WriteDeadBlocks(File("d.asc"), dead, false, 10000);
    EXPECT_EQ(test::ReadFile(File("d.asc")),
              "VERSION 002 000\r\n  @DEADLOAD indented\r\n" + dl + "FOO bar\r\n  x\r\n");
}

// ---------------------------------------------------------------- safe rewrite

TEST_F(BlockFile, FailedRewriteLeavesTheOldFileByteIdentical) {
    const std::string old = kExample + "@ mine\r\n";
    const std::string f = Put(old);
    Roof r = ExampleRoof();
    r.wind.Norm = 3;
    struct Fault {
        int64_t after;
        bool atRename;
        int32_t error;
    };
    // The new text has the old one's length: it fails at its first byte, in
    // its middle, one byte before its end, and at the rename.
    const int64_t size = static_cast<int64_t>(old.size());
    const Fault faults[] = {{0, false, 61}, {1, false, 61}, {size / 2, false, 61}, {size - 1, false, 61}, {-1, true, 75}};
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.after);
        SetFileWriteFault(fault.after, fault.atRename);
        EXPECT_EQ(test::ErrorOf([&] { WriteRoof(f, r); }), fault.error);
        EXPECT_EQ(test::ReadFile(f), old);
        EXPECT_EQ(Listing(), std::vector<std::string>{"roof.asc"});  // no temporary file left
    }
    SetFileWriteFault(10, false);
    EXPECT_THROW(WriteRoof(File("new.asc"), r), RuntimeError);
    EXPECT_EQ(Listing(), std::vector<std::string>{"roof.asc"});

    SetFileWriteFault(-1, false);
    WriteRoof(f, r);
    EXPECT_EQ(ReadRoof(f).wind.Norm, 3);
}

TEST_F(BlockFile, RewriteKeepsPermissionsAndFollowsLinks) {
    const std::string f = Put(kExample);
    ASSERT_EQ(::chmod(f.c_str(), 0640), 0);
    WriteRoof(f, ExampleRoof(), 0);
    struct stat st {};
    ASSERT_EQ(::stat(f.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);

    // A link in another folder: the file it names is replaced in its own folder.
    fs::create_directories(dir_ / "sub");
    fs::create_symlink("../roof.asc", dir_ / "sub" / "link.asc");
    WriteRoof(File("sub/link.asc"), ExampleRoof(), 1);
    EXPECT_TRUE(fs::is_symlink(dir_ / "sub" / "link.asc"));
    EXPECT_EQ(test::ReadFile(f), kExample);
    EXPECT_EQ(Listing(), (std::vector<std::string>{"roof.asc", "sub"}));
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_ / "sub"), fs::directory_iterator{}), 1);

    EXPECT_EQ(test::ErrorOf([&] { WriteRoof(File("missing/x.asc"), ExampleRoof()); }), 76);
}

TEST_F(BlockFile, RewriteRefusesWhatIsNoRegularFile) {
    ASSERT_EQ(::mkfifo(File("fifo").c_str(), 0644), 0);
    fs::create_symlink("nowhere.asc", dir_ / "dangling");
    fs::create_directories(dir_ / "folder");
    fs::create_symlink("folder", dir_ / "tofolder");
    // A device node of our own, so that a failure cannot replace a system one.
    const bool haveDevice = ::mknod(File("null").c_str(), S_IFCHR | 0666, makedev(1, 3)) == 0;
    struct Case {
        const char* name;
        const char* says;
    } cases[] = {{"fifo", "a FIFO"},      {"dangling", "symbolic link to nothing"},
                 {"folder", "a folder"}, {"tofolder", "a folder"},
                 {"null", "a device"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (std::string(c.name) == "null" && !haveDevice) continue;  // mknod needs privileges
        struct stat before {};
        ASSERT_EQ(::lstat(File(c.name).c_str(), &before), 0);
        try {
            WriteRoof(File(c.name), ExampleRoof());
            ADD_FAILURE() << "no error";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), 75);
            EXPECT_NE(e.description().find(c.says), std::string::npos) << e.description();
        }
        struct stat after {};
        ASSERT_EQ(::lstat(File(c.name).c_str(), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino);
        EXPECT_EQ(after.st_mode, before.st_mode);
    }
    EXPECT_FALSE(fs::exists(dir_ / "nowhere.asc"));
    // The reader takes none of them for a file to block on.
    Roof r = ReadRoof(File("fifo"));
    EXPECT_EQ(r.wind.Norm, 0);
}

// Runs body as user nobody in a forked child when we are root, else directly;
// the child's exit status is body's result.
int AsUnprivileged(const std::function<int()>& body) {
    if (::geteuid() != 0) return body();
    const pid_t pid = ::fork();
    if (pid == 0) {
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
        ::_exit(body());
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

TEST_F(BlockFile, WriteProtectedFileIsRefusedAndOwnerKept) {
    // The folder lets anyone rename, so only the file's own protection stops a rewrite.
    ASSERT_EQ(::chmod(dir_.c_str(), 0777), 0);
    const std::string f = Put(kExample);
    ASSERT_EQ(::chmod(f.c_str(), 0444), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(f.c_str(), 65534, 65534), 0);
    }
    Roof changed = ExampleRoof();
    changed.wind.Norm = 3;
    const int rc = AsUnprivileged([&] {
        try {
            WriteRoof(f, changed);
            return 1;
        } catch (const RuntimeError& e) {
            return e.number() == 70 && e.description().find("write-protected") != std::string::npos ? 0 : 2;
        }
    });
    ASSERT_NE(rc, 99) << "could not become user nobody";
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(test::ReadFile(f), kExample);
    EXPECT_EQ(Listing(), std::vector<std::string>{"roof.asc"});

    // Root may write it, as it may write it in place; the rewrite keeps mode and owner.
    if (::geteuid() != 0) GTEST_SKIP() << "keeping another user's ownership needs root";
    WriteRoof(f, changed);
    EXPECT_EQ(ReadRoof(f).wind.Norm, 3);
    struct stat st {};
    ASSERT_EQ(::stat(f.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0444u);
    EXPECT_EQ(st.st_uid, 65534u);
    EXPECT_EQ(st.st_gid, 65534u);
}

TEST_F(BlockFile, SessionWritersMakeOneRewrite) {
    const std::string old = kExample + "DEADLOAD 1 0.0001 'alt' 0 '' 0 ''\r\n";
    Roof r = ExampleRoof();
    r.town.AGS = "1";
    const DeadLoadRec dead{1, 2.5, "neu", 0.0, "", 0.0, ""};
    // The same bytes as the two writers one after the other.
    const std::string seq = Put(old, "seq.asc");
    WriteRoof(seq, r);
    WriteDeadBlocks(seq, dead, true, 10000);
    const std::string f = Put(old);
    {
        BlockFileRewrite rw(f);
        rw.Roof(r.town, r.wind, r.snow, true, 10000, 1, "_1_3_");
        rw.Dead(dead, true, 10000);
        rw.Commit();
    }
    EXPECT_EQ(test::ReadFile(f), test::ReadFile(seq));

    // A failure at the one rename leaves neither block new.
    SetFileWriteFault(-1, true);
    {
        BlockFileRewrite rw(Put(old));
        rw.Roof(r.town, r.wind, r.snow, true, 10000, 1, "_1_3_");
        rw.Dead(dead, true, 10000);
        EXPECT_THROW(rw.Commit(), RuntimeError);
    }
    SetFileWriteFault(-1, false);
    EXPECT_EQ(test::ReadFile(f), old);
}

TEST_F(BlockFile, LeftoversOfAKilledWriterAreCleanedUp) {
    const std::string f = Put(kExample);
    Put("", ".roof.asc.lock");
    Put("half", ".roof.asc.tmp-4242-0-0");
    Put("other", ".roof.asc.tmp-1.tmp-4242-0-0");  // a temporary file of "roof.asc.tmp-1", not ours
    WriteRoof(f, ExampleRoof());
    EXPECT_EQ(Listing(), (std::vector<std::string>{".roof.asc.tmp-1.tmp-4242-0-0", "roof.asc"}));
    EXPECT_EQ(test::ReadFile(f), kExample);
}

TEST_F(BlockFile, SecondWriterWaitsForTheLock) {
    const std::string f = Put(kExample);
    // The child is forked before the parent locks, so that it does not share
    // the parent's lock; it starts writing once the parent holds the lock.
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(gate[1]);
        char b;
        if (::read(gate[0], &b, 1) != 1) ::_exit(2);
        DeadLoadRec dead;
        dead.Descr0 = "child";
        try {
            WriteDeadBlocks(f, dead, true, 10000);
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    ::close(gate[0]);
    std::optional<BlockFileRewrite> held;
    held.emplace(f);
    ASSERT_EQ(::write(gate[1], "go", 1), 1);
    ::close(gate[1]);
    // Give the child time to read the file if nothing held it back; it must not.
    ::usleep(200 * 1000);
    EXPECT_EQ(test::ReadFile(f), kExample);
    Roof r = ExampleRoof();
    r.town.AGS = "parent";
    held->Roof(r.town, r.wind, r.snow, true, 10000, 1, "_1_3_");
    held->Commit();
    held.reset();
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    // Neither update is lost: the child read what the parent wrote.
    EXPECT_EQ(ReadRoof(f).town.AGS, "parent");
    EXPECT_EQ(Dead(f).Descr0, "child");
    EXPECT_EQ(Listing(), std::vector<std::string>{"roof.asc"});
}

// ---------------------------------------------------------------- encodings and line ends

TEST_F(BlockFile, Windows1252IsReadAndWrittenBackIn1252) {
    // "Dachgeschoß €" in code page 1252.
    const std::string f = Put("VERSION 004 001\r\nDEADLOAD 1 0.0001 'Dachgescho\xDF \x80' 0 '' 0 ''\r\n");
    DeadLoadRec dead = Dead(f);
    EXPECT_EQ(dead.Descr0, "Dachgescho\xC3\x9F \xE2\x82\xAC");
    dead.Descr1 = "Stra\xC3\x9F" "e";
    dead.Descr2 = "\xC5\x81\xC3\xB3" "d\xC5\xBA";  // Łódź: Ł and ź are not in 1252
    WriteDeadBlocks(f, dead, false, 10000);
    EXPECT_EQ(test::ReadFile(f),
              "VERSION 004 001\r\n"
              "DEADLOAD          1   0.000100 'Dachgescho\xDF \x80'   0.000000 'Stra\xDF" "e'   0.000000 '?\xF3" "d?'\r\n");

    // Valid UTF-8 stays UTF-8, and a byte order mark stays in front.
    const std::string u = Put("\xEF\xBB\xBFVERSION 004 001\r\nDEADLOAD 1 0 'Stra\xC3\x9F" "e' 0 '' 0 ''\r\n", "u.asc");
    dead = Dead(u);
    EXPECT_EQ(dead.Descr0, "Stra\xC3\x9F" "e");
    WriteDeadBlocks(u, dead, false, 10000);
    EXPECT_EQ(test::ReadFile(u).substr(0, 20), "\xEF\xBB\xBFVERSION 004 001\r\n");
    EXPECT_NE(test::ReadFile(u).find("'Stra\xC3\x9F" "e'"), std::string::npos);
}

TEST_F(BlockFile, LinesEndAtCrLfLfOrLoneCr) {
    const std::string f = Put("VERSION 004 001\nSNOWLOAD 1 0.00007 250 2\rTOWN '1'\r\n\r\n@ x\r");
    const Roof r = ReadRoof(f);
    EXPECT_EQ(r.snow.sz, 2);
    EXPECT_EQ(r.town.AGS, "1");
    WriteRoof(f, r, 1, "");
    EXPECT_EQ(test::ReadFile(f),
              "@VERSION Vers CtrlNorm\r\nVERSION 004 001\r\n" + kSnowComment +
                  "\r\nSNOWLOAD          1   0.000070     250.00          2\r\n@TOWN            AGS\r\nTOWN     '1'\r\n"
                  "\r\n@ x\r\n" + kWindComment +
                  "\r\nWINDLOAD          0   0.000000       0.00          0          0          0\r\n");
}

}  // namespace
