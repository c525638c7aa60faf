#include "store/StoreText.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace qvrl {

namespace {

// The order of text is part of the file format: an index built by one build
// must read right in the next. So the store folds case by its own fixed
// rule (ASCII and Latin-1 letters, as Basic's UCase does today) and does not
// follow later changes of UCase.
char32_t FoldCase(char32_t c) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 0x20;
    return c;
}

// A byte that does not start valid UTF-8 stands for itself, above every
// code point, so that any byte string has a place in the order.
constexpr char32_t kStrayByte = 0x110000;

char32_t NextCodePoint(std::string_view s, size_t& i) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    auto cont = [&](size_t k) {
        return i + k < s.size() && (static_cast<unsigned char>(s[i + k]) & 0xC0) == 0x80;
    };
    auto at = [&](size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(s[i + k]) & 0x3F); };
    if (b0 < 0x80) {
        ++i;
        return b0;
    }
    if (b0 >= 0xC2 && b0 <= 0xDF && cont(1)) {
        const char32_t cp = (static_cast<char32_t>(b0 & 0x1F) << 6) | at(1);
        i += 2;
        return cp;
    }
    if (b0 >= 0xE0 && b0 <= 0xEF && cont(1) && cont(2)) {
        const char32_t cp = (static_cast<char32_t>(b0 & 0x0F) << 12) | (at(1) << 6) | at(2);
        if (cp >= 0x800 && (cp < 0xD800 || cp > 0xDFFF)) {
            i += 3;
            return cp;
        }
    } else if (b0 >= 0xF0 && b0 <= 0xF4 && cont(1) && cont(2) && cont(3)) {
        const char32_t cp = (static_cast<char32_t>(b0 & 0x07) << 18) | (at(1) << 12) | (at(2) << 6) | at(3);
        if (cp >= 0x10000 && cp <= 0x10FFFF) {
            i += 4;
            return cp;
        }
    }
    ++i;
    return kStrayByte + b0;
}

// The code points of a text, case folded.
std::u32string Folded(std::string_view s) {
    std::u32string r;
    r.reserve(s.size());
    for (size_t i = 0; i < s.size();) r.push_back(FoldCase(NextCodePoint(s, i)));
    return r;
}

// The letters a code point sorts as, case and accents set aside (at most two).
size_t SortLetters(char32_t c, char32_t out[2]) {
    c = FoldCase(c);
    auto one = [&](char32_t x) {
        out[0] = x;
        return size_t{1};
    };
    auto two = [&](char32_t x, char32_t y) {
        out[0] = x;
        out[1] = y;
        return size_t{2};
    };
    if (c >= 0xC0 && c <= 0xC5) return one('A');
    switch (c) {
    case 0xC6: return two('A', 'E');
    case 0xC7: return one('C');
    case 0xC8: case 0xC9: case 0xCA: case 0xCB: return one('E');
    case 0xCC: case 0xCD: case 0xCE: case 0xCF: return one('I');
    case 0xD0: return one('D');
    case 0xD1: return one('N');
    case 0xD2: case 0xD3: case 0xD4: case 0xD5: case 0xD6: case 0xD8: return one('O');
    case 0xD9: case 0xDA: case 0xDB: case 0xDC: return one('U');
    case 0xDD: case 0xFF: return one('Y');
    case 0xDE: return two('T', 'H');
    case 0xDF: return two('S', 'S');
    default: return one(c);
    }
}

// Walks a text as the sequence of its sort letters.
class LetterStream {
public:
    explicit LetterStream(std::string_view s) : s_(s) {}
    bool Next(char32_t& c) {
        if (k_ < n_) {
            c = buf_[k_++];
            return true;
        }
        if (i_ >= s_.size()) return false;
        n_ = SortLetters(NextCodePoint(s_, i_), buf_);
        k_ = 1;
        c = buf_[0];
        return true;
    }

private:
    std::string_view s_;
    size_t i_ = 0;
    char32_t buf_[2] = {0, 0};
    size_t n_ = 0, k_ = 0;
};

// One element of a LIKE pattern at p[i]: how many pattern code points it
// takes, whether it takes a character of the value at all, and whether it
// matches c.
struct Element {
    size_t length = 1;
    bool zeroWidth = false;
};

Element Measure(const std::u32string& p, size_t i) {
    if (p[i] != U'[') return {};
    const size_t close = p.find(U']', i + 1);
    if (close == std::u32string::npos) return {};  // a lone "[" is a literal
    if (close == i + 1) return {2, true};
    return {close - i + 1, false};
}

bool Matches(const std::u32string& p, size_t i, const Element& e, char32_t c) {
    const char32_t pc = p[i];
    if (e.length == 1) {
        if (pc == U'?') return true;
        if (pc == U'#') return c >= U'0' && c <= U'9';
        return pc == c;
    }
    size_t k = i + 1;
    const size_t end = i + e.length - 1;  // the closing "]"
    bool negate = false;
    if (p[k] == U'!' && k + 1 < end) {
        negate = true;
        ++k;
    }
    bool hit = false;
    for (; k < end; ++k) {
        if (k + 2 < end && p[k + 1] == U'-') {
            if (c >= p[k] && c <= p[k + 2]) hit = true;
            k += 2;
        } else if (p[k] == c) {
            hit = true;
        }
    }
    return hit != negate;
}

void LikeFunction(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    if (argc != 2 || sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    try {
        const auto* v = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
        const int vn = sqlite3_value_bytes(argv[0]);
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
        const int pn = sqlite3_value_bytes(argv[1]);
        if (!v || !p) {
            sqlite3_result_error_nomem(ctx);
            return;
        }
        sqlite3_result_int(ctx, LikeMatch(std::string_view(v, static_cast<size_t>(vn)),
                                          std::string_view(p, static_cast<size_t>(pn)))
                                    ? 1
                                    : 0);
    } catch (...) {
        sqlite3_result_error_nomem(ctx);
    }
}

int CollationFunction(void*, int n1, const void* p1, int n2, const void* p2) {
    const std::string_view a(static_cast<const char*>(p1), static_cast<size_t>(n1));
    const std::string_view b(static_cast<const char*>(p2), static_cast<size_t>(n2));
    try {
        return CompareText(a, b);
    } catch (...) {
        // Out of memory while ordering: the byte order is still a total order.
        const int c = a.compare(b);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) {
    if (a == b) return 0;
    // Plain ASCII letters sort as their capitals, one for one, so a common
    // ASCII start needs no decoding.
    size_t i = 0;
    const size_t n = std::min(a.size(), b.size());
    for (; i < n; ++i) {
        auto ca = static_cast<unsigned char>(a[i]);
        auto cb = static_cast<unsigned char>(b[i]);
        if (ca >= 0x80 || cb >= 0x80) break;
        if (ca >= 'a' && ca <= 'z') ca = static_cast<unsigned char>(ca - 32);
        if (cb >= 'a' && cb <= 'z') cb = static_cast<unsigned char>(cb - 32);
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    LetterStream la(a.substr(i)), lb(b.substr(i));
    for (;;) {
        char32_t ca = 0, cb = 0;
        const bool ha = la.Next(ca);
        const bool hb = lb.Next(cb);
        if (!ha || !hb) {
            if (ha != hb) return ha ? 1 : -1;
            break;
        }
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    // Equal letters: case-blind, but accents count.
    size_t ia = i, ib = i;
    while (ia < a.size() && ib < b.size()) {
        const char32_t ca = FoldCase(NextCodePoint(a, ia));
        const char32_t cb = FoldCase(NextCodePoint(b, ib));
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    if (ia < a.size()) return 1;
    if (ib < b.size()) return -1;
    return 0;
}

bool LikeMatch(std::string_view value, std::string_view pattern) {
    const std::u32string v = Folded(value);
    const std::u32string p = Folded(pattern);
    size_t vi = 0, pi = 0;
    size_t starP = std::u32string::npos, starV = 0;
    while (vi < v.size()) {
        if (pi < p.size()) {
            if (p[pi] == U'*') {
                starP = pi++;
                starV = vi;
                continue;
            }
            const Element e = Measure(p, pi);
            if (e.zeroWidth) {
                pi += e.length;
                continue;
            }
            if (Matches(p, pi, e, v[vi])) {
                ++vi;
                pi += e.length;
                continue;
            }
        }
        if (starP == std::u32string::npos) return false;
        pi = starP + 1;
        vi = ++starV;
    }
    while (pi < p.size()) {
        if (p[pi] == U'*') {
            ++pi;
            continue;
        }
        const Element e = Measure(p, pi);
        if (!e.zeroWidth) return false;
        pi += e.length;
    }
    return true;
}

int RegisterStoreText(sqlite3* db) {
    int rc = sqlite3_create_collation_v2(db, kStoreCollation, SQLITE_UTF8, nullptr, CollationFunction, nullptr);
    if (rc != SQLITE_OK) return rc;
    rc = sqlite3_create_function_v2(db, kStoreLikeFunction, 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                    nullptr, LikeFunction, nullptr, nullptr, nullptr);
    return rc;
}

}  // namespace qvrl
