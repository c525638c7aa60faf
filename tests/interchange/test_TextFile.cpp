#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "interchange/TextFile.h"
#include "interchange/modAscii.h"

using namespace qvrl;

namespace {

TEST(BlockTextFile, LinesEndAtCrLfLfAndLoneCr) {
    struct Case {
        std::string text;
        std::vector<std::string> lines;
    } cases[] = {
        {"", {}},
        {"\r\n", {""}},
        {"a", {"a"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb\rc", {"a", "b", "c"}},
        {"a\r\r\nb", {"a", "", "b"}},  // a lone CR, then CR LF
        {"a\n\rb", {"a", "", "b"}},    // LF then CR are two ends
        {"\r\r", {"", ""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(SplitLines(c.text), c.lines);
    }
}

TEST(BlockTextFile, Utf8IsTakenOnlyWhenWellFormed) {
    struct Case {
        std::string bytes;
        bool valid;
    } cases[] = {
        {"Stra\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80", true},
        {"\xC3", false},              // cut short
        {"\xC0\x80", false},          // overlong
        {"\xED\xA0\x80", false},      // a surrogate
        {"\xF4\x90\x80\x80", false},  // beyond U+10FFFF
        {"Stra\xDF" "e", false},      // 1252
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(IsValidUtf8(c.bytes), c.valid);
        EXPECT_EQ(DecodeText(c.bytes).encoding, c.valid ? TextEncoding::Utf8 : TextEncoding::Windows1252);
    }
}

TEST(BlockTextFile, Windows1252RoundTripKeepsEveryByte) {
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    const std::string utf8 = Windows1252ToUtf8(all);
    EXPECT_TRUE(IsValidUtf8(utf8));
    EXPECT_EQ(Utf8ToWindows1252(utf8), all);
    EXPECT_EQ(Windows1252ToUtf8("\x80\x9F\xE4"), "\xE2\x82\xAC\xC5\xB8\xC3\xA4");  // € Ÿ ä
    EXPECT_EQ(Utf8ToWindows1252("\xC5\x81\xF0\x9F\x98\x80\xFF"), "???");           // Ł, an emoji, a stray byte
}

TEST(AsciiSplitLongText, DoubleBlanksBecomeLineBreaks) {
    struct Case {
        std::string in, out;
    } cases[] = {
        {"a  b", "a\r\nb"},
        {"  ", "  "},  // not longer than two characters
        {"  x", "\r\nx"},
        {"a   b", "a\r\n b"},
        {"a    b", "a\r\n\r\nb"},
        {"a b c", "a b c"},
        {"", ""},
    };
    for (const auto& c : cases) {
        std::string t = c.in;
        SplitLongText(t);
        EXPECT_EQ(t, c.out) << c.in;
    }
}

}  // namespace
