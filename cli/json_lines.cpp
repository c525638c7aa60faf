#include "json_lines.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "commands.h"

namespace qvrl::cli {

namespace {

bool Plain(char c) { return c >= 0x20 && c <= 0x7E && c != '"' && c != '\\'; }

class Cursor {
public:
    explicit Cursor(std::string_view s) : p_(s.data()), e_(s.data() + s.size()) {}

    bool AtEnd() const { return p_ == e_; }
    void SkipSpace() {
        while (p_ != e_ && (*p_ == ' ' || *p_ == '\t' || *p_ == '\n' || *p_ == '\r')) ++p_;
    }
    bool Eat(char c) {
        if (p_ == e_ || *p_ != c) return false;
        ++p_;
        return true;
    }
    bool Word(std::string_view w) {
        if (static_cast<size_t>(e_ - p_) < w.size() || std::string_view(p_, w.size()) != w) return false;
        p_ += w.size();
        return true;
    }
    bool Text(std::string_view& t) {
        if (!Eat('"')) return false;
        const char* b = p_;
        while (p_ != e_ && Plain(*p_)) ++p_;
        if (!Eat('"')) return false;
        t = std::string_view(b, static_cast<size_t>(p_ - 1 - b));
        return true;
    }
    // A number as JSON writes it, converted as the general reader converts
    // it; false for one that reader might refuse or round otherwise.
    bool Number(Variant& v) {
        const char* b = p_;
        Eat('-');
        const char* digits = p_;
        if (Eat('0')) {
        } else if (p_ != e_ && *p_ >= '1' && *p_ <= '9') {
            while (p_ != e_ && *p_ >= '0' && *p_ <= '9') ++p_;
        } else {
            return false;
        }
        const size_t whole = static_cast<size_t>(p_ - digits);
        bool fraction = false;
        if (Eat('.')) {
            fraction = true;
            if (!Digits()) return false;
        }
        if (p_ != e_ && (*p_ == 'e' || *p_ == 'E')) {
            fraction = true;
            ++p_;
            if (!Eat('+')) Eat('-');
            if (!Digits()) return false;
        }
        if (!fraction) {
            // Fifteen digits stay below 2^53, where no whole number is refused.
            if (whole > 15) return false;
            int64_t i = 0;
            std::from_chars(b, p_, i);
            v = VariantFromInteger(i);
            return true;
        }
        double d = 0.0;
        const auto [end, ec] = std::from_chars(b, p_, d);
        if (ec != std::errc() || end != p_ || !std::isfinite(d)) return false;
        v = Variant(d);
        return true;
    }

private:
    bool Digits() {
        const char* b = p_;
        while (p_ != e_ && *p_ >= '0' && *p_ <= '9') ++p_;
        return p_ != b;
    }

    const char* p_;
    const char* e_;
};

bool Value(Cursor& c, Variant& v) {
    std::string_view t;
    if (c.Text(t)) {
        v = Variant(std::string(t));
        return true;
    }
    if (c.Word("true")) v = Variant(true);
    else if (c.Word("false")) v = Variant(false);
    else if (c.Word("null")) v = Variant();
    else return c.Number(v);
    return true;
}

bool Args(Cursor& c, std::vector<Variant>& args) {
    if (!c.Eat('[')) return false;
    c.SkipSpace();
    if (c.Eat(']')) return true;
    for (;;) {
        c.SkipSpace();
        if (!Value(c, args.emplace_back())) return false;
        c.SkipSpace();
        if (c.Eat(']')) return true;
        if (!c.Eat(',')) return false;
    }
}

}  // namespace

bool ReadPlainRequest(std::string_view line, std::string& call, std::vector<Variant>& args) {
    args.clear();
    Cursor c(line);
    bool haveCall = false;
    bool haveArgs = false;
    c.SkipSpace();
    if (!c.Eat('{')) return false;
    for (;;) {
        c.SkipSpace();
        std::string_view key;
        if (!c.Text(key)) return false;
        c.SkipSpace();
        if (!c.Eat(':')) return false;
        c.SkipSpace();
        if (key == "call" && !haveCall) {
            std::string_view t;
            if (!c.Text(t)) return false;
            call.assign(t);
            haveCall = true;
        } else if (key == "args" && !haveArgs) {
            if (!Args(c, args)) return false;
            haveArgs = true;
        } else {
            return false;
        }
        c.SkipSpace();
        if (c.Eat('}')) break;
        if (!c.Eat(',')) return false;
    }
    c.SkipSpace();
    return c.AtEnd() && haveCall;
}

void AppendJsonNumber(std::string& out, double d) {
    if (!std::isfinite(d)) {
        out += "null";
        return;
    }
    // The library's own shortest form, so that a number reads as dump() has
    // always written it.
    char buf[64];
    char* end = nlohmann::detail::to_chars(buf, buf + sizeof buf, d);
    out.append(buf, static_cast<size_t>(end - buf));
}

void AppendJsonText(std::string& out, std::string_view text) {
    bool plain = true;
    for (const char ch : text) plain = plain && Plain(ch);
    if (!plain) {
        out += nlohmann::ordered_json(std::string(text)).dump(-1, ' ', false,
                                                              nlohmann::ordered_json::error_handler_t::replace);
        return;
    }
    out += '"';
    out += text;
    out += '"';
}

void AppendJson(std::string& out, const Variant& v) {
    char buf[24];
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: out += "null"; return;
    case Variant::Type::Integer: {
        const auto end = std::to_chars(buf, buf + sizeof buf, v.asInteger()).ptr;
        out.append(buf, static_cast<size_t>(end - buf));
        return;
    }
    case Variant::Type::Long: {
        const auto end = std::to_chars(buf, buf + sizeof buf, v.asLong()).ptr;
        out.append(buf, static_cast<size_t>(end - buf));
        return;
    }
    case Variant::Type::Double: AppendJsonNumber(out, v.asDouble()); return;
    case Variant::Type::Boolean: out += v.asBoolean() ? "true" : "false"; return;
    case Variant::Type::String: AppendJsonText(out, v.asString()); return;
    default:
        out += VariantToJson(v).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
        return;
    }
}

}  // namespace qvrl::cli
