#include "interchange/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "support/errors.h"

namespace qvrl {

namespace {

constexpr std::string_view kBom = "\xEF\xBB\xBF";

// Code points of the bytes 0x80 to 0x9F.
constexpr char32_t kHigh1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Decodes one well-formed sequence at i; returns its length, 0 when the
// bytes there are not well-formed UTF-8.
size_t DecodeUtf8(std::string_view s, size_t i, char32_t& c) {
    const auto b = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char lead = b(i);
    if (lead < 0x80) {
        c = lead;
        return 1;
    }
    size_t n;
    char32_t min;
    if (lead >= 0xC2 && lead <= 0xDF) n = 2, c = lead & 0x1F, min = 0x80;
    else if (lead >= 0xE0 && lead <= 0xEF) n = 3, c = lead & 0x0F, min = 0x800;
    else if (lead >= 0xF0 && lead <= 0xF4) n = 4, c = lead & 0x07, min = 0x10000;
    else return 0;
    if (i + n > s.size()) return 0;
    for (size_t k = 1; k < n; ++k) {
        if ((b(i + k) & 0xC0) != 0x80) return 0;
        c = (c << 6) | (b(i + k) & 0x3F);
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return 0;
    return n;
}

[[noreturn]] void RaiseIo(int e, const std::string& path) {
    if (e == EACCES || e == EPERM) Raise(70, path, "Permission denied ('" + path + "')");
    Raise(err::FileAccess, path, ErrorDescription(err::FileAccess) + " ('" + path + "')");
}

}  // namespace

bool IsValidUtf8(std::string_view bytes) {
    char32_t c;
    for (size_t i = 0; i < bytes.size();) {
        const size_t n = DecodeUtf8(bytes, i, c);
        if (n == 0) return false;
        i += n;
    }
    return true;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        if (b < 0x80) out += ch;
        else if (b < 0xA0) AppendUtf8(out, kHigh1252[b - 0x80]);
        else AppendUtf8(out, b);
    }
    return out;
}

std::string Utf8ToWindows1252(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    char32_t c;
    for (size_t i = 0; i < text.size();) {
        const size_t n = DecodeUtf8(text, i, c);
        if (n == 0) {
            out += '?';
            ++i;
            continue;
        }
        i += n;
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            out += static_cast<char>(c);
            continue;
        }
        char mapped = '?';
        for (unsigned k = 0; k < 32; ++k)
            if (kHigh1252[k] == c) {
                mapped = static_cast<char>(0x80 + k);
                break;
            }
        out += mapped;
    }
    return out;
}

bool CanEncode(std::string_view text, TextEncoding encoding) {
    if (encoding != TextEncoding::Windows1252) return true;
    const std::string bytes = Utf8ToWindows1252(text);
    // Every character is one byte there, so a "?" of the result lines up with its character.
    size_t k = 0;
    char32_t c;
    for (size_t i = 0; i < text.size(); ++k) {
        const size_t n = DecodeUtf8(text, i, c);
        if (n == 0 || (bytes[k] == '?' && c != U'?')) return false;
        i += n;
    }
    return true;
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c != '\r' && c != '\n') continue;
        lines.emplace_back(text.substr(start, i - start));
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < text.size()) lines.emplace_back(text.substr(start));
    return lines;
}

std::string ReadFileBytes(const std::string& path) {
    // Not held up by a FIFO that nobody writes to: that is no file to read.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) RaiseIo(errno, path);
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        Raise(err::FileAccess, path, "'" + path + "' is not a regular file");
    }
    std::string bytes;
    char buf[16384];
    for (;;) {
        const ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR) continue;
            const int e = errno;
            ::close(fd);
            RaiseIo(e, path);
        }
        if (n == 0) break;
        bytes.append(buf, static_cast<size_t>(n));
    }
    ::close(fd);
    return bytes;
}

TextLines DecodeText(std::string_view bytes) {
    TextLines t;
    if (bytes.substr(0, kBom.size()) == kBom && IsValidUtf8(bytes)) {
        t.encoding = TextEncoding::Utf8Bom;
        t.lines = SplitLines(bytes.substr(kBom.size()));
    } else if (IsValidUtf8(bytes)) {
        t.lines = SplitLines(bytes);
    } else {
        t.encoding = TextEncoding::Windows1252;
        t.lines = SplitLines(Windows1252ToUtf8(bytes));
    }
    return t;
}

TextLines ReadTextLines(const std::string& path) { return DecodeText(ReadFileBytes(path)); }

std::string EncodeText(std::string_view text, TextEncoding encoding) {
    switch (encoding) {
    case TextEncoding::Utf8Bom: return std::string(kBom) + std::string(text);
    case TextEncoding::Windows1252: return Utf8ToWindows1252(text);
    case TextEncoding::Utf8: break;
    }
    return std::string(text);
}

}  // namespace qvrl
