#pragma once
// Text files the user or the host owns, read as lines of UTF-8 whatever their
// bytes were, and written back in the encoding they came in.

#include <string>
#include <string_view>
#include <vector>

namespace qvrl {

enum class TextEncoding {
    Utf8,
    Utf8Bom,      // UTF-8 behind a byte order mark, which a rewrite keeps
    Windows1252,  // bytes that are not valid UTF-8
};

struct TextLines {
    TextEncoding encoding = TextEncoding::Utf8;
    std::vector<std::string> lines;  // UTF-8, without their line ends
};

bool IsValidUtf8(std::string_view bytes);
// Every byte has a character; the five bytes Windows leaves unassigned map to
// the control characters of the same number, so a round trip keeps them.
std::string Windows1252ToUtf8(std::string_view bytes);
// A character that code page 1252 lacks, or a byte that is not UTF-8, becomes "?".
std::string Utf8ToWindows1252(std::string_view text);

// Whether text survives EncodeText in that encoding; false when a character
// would become "?".
bool CanEncode(std::string_view text, TextEncoding encoding);

// Lines end at CR LF, at LF or at a lone CR. A last line needs no line end;
// an empty text has no lines.
std::vector<std::string> SplitLines(std::string_view text);

// Reads a file whole. A file that cannot be read, or is no regular file, is
// error 75 (70 when access is denied).
std::string ReadFileBytes(const std::string& path);
TextLines DecodeText(std::string_view bytes);
TextLines ReadTextLines(const std::string& path);
// UTF-8 text in the given encoding.
std::string EncodeText(std::string_view text, TextEncoding encoding);

}  // namespace qvrl
