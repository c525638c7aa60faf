#include <functional>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <unordered_map>

#include "automation/Dispatch.h"
#include "commands.h"
#include "json_lines.h"
#include "interchange/TextFile.h"
#include "support/errors.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

ordered_json ToJson(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: return nullptr;
    case Variant::Type::Integer: return v.asInteger();
    case Variant::Type::Long: return v.asLong();
    case Variant::Type::Double: return v.asDouble();
    case Variant::Type::Boolean: return v.asBoolean();
    case Variant::Type::String: return v.asString();
    case Variant::Type::Date: return v.toString();
    case Variant::Type::Array: {
        ordered_json a = ordered_json::array();
        for (const Variant& e : v.asArray()) a.push_back(ToJson(e));
        return a;
    }
    case Variant::Type::Object:
        if (v.isNothing()) return nullptr;
        return {{"object", v.asObject()->ClassName()}};
    }
    return nullptr;
}

// Lists in one argument nest at most this deep, as the C API and the Python
// module allow.
constexpr size_t kMaxDepth = 32;

// Builds tagged values straight from the parser's events, with a stack of its
// own instead of recursion, so that no nesting can exhaust the call stack.
// As a request reader it takes the one object {"call":…,"args":[…]}.
class ValueReader {
public:
    explicit ValueReader(bool request) : request_(request) {}

    // The error that stopped the reading, if any.
    const std::optional<RuntimeError>& error() const { return error_; }
    Variant& value() { return value_; }
    std::optional<Variant>& call() { return call_; }
    std::optional<Variant>& args() { return args_; }

    bool null() { return Put(Variant()); }
    bool boolean(bool b) { return Put(Variant(b)); }
    bool number_integer(int64_t i) {
        return Guarded([&] { return Put(VariantFromInteger(i)); });
    }
    bool number_unsigned(uint64_t u) {
        return Guarded([&] { return Put(VariantFromInteger(u)); });
    }
    bool number_float(double d, const std::string& text) {
        // A whole number beyond 64 bits arrives here as a double. (A number
        // beyond the range of a double is no JSON to the parser.)
        return Guarded([&] {
            return Put(text.find_first_of(".eE") == std::string::npos ? VariantFromIntegerText(text) : Variant(d));
        });
    }
    bool string(std::string& t) { return Put(Variant(std::move(t))); }
    bool binary(nlohmann::json::binary_t&) { return Fail(err::TypeMismatch, "binary values are not arguments"); }
    bool start_object(size_t) {
        if (request_ && stack_.size() == 1)
            return Fail(err::InvalidCall, stack_.back().key == "args" ? "\"args\" must be an array"
                                                                      : "\"call\" must be a text");
        if (!request_ || !stack_.empty() || seenTop_)
            return Fail(err::TypeMismatch, "an argument cannot be an object");
        stack_.push_back(Frame{true, {}, {}});
        return true;
    }
    bool key(std::string& k) {
        if (k != "call" && k != "args") return Fail(err::InvalidCall, "unknown key \"" + k + "\" (keys: call, args)");
        stack_.back().key = k;
        return true;
    }
    bool end_object() {
        stack_.pop_back();
        seenTop_ = true;
        return true;
    }
    bool start_array(size_t) {
        if (request_ && stack_.empty()) return Fail(err::InvalidCall, "not a JSON object");
        stack_.push_back(Frame{false, {}, {}});
        // In a request the object and the list of arguments come first.
        const size_t depth = stack_.size() - (request_ ? 2 : 0);
        if (depth > kMaxDepth)
            return Fail(err::InvalidCall, "lists nested deeper than " + std::to_string(kMaxDepth) +
                                              " levels in an argument; " + std::to_string(kMaxDepth) +
                                              " is the limit");
        return true;
    }
    bool end_array() {
        Variant list(std::move(stack_.back().items));
        stack_.pop_back();
        return Put(std::move(list));
    }
    bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) {
        syntax_ = true;
        return Fail(err::InvalidCall, "not JSON");
    }
    // Whether the text itself stopped the reading, rather than its content.
    bool syntax() const { return syntax_; }

private:
    struct Frame {
        bool object = false;
        std::vector<Variant> items;
        std::string key;
    };

    bool Fail(int32_t number, const std::string& why) {
        if (!error_) error_ = RuntimeError(number, why);
        return false;
    }
    template <class F>
    bool Guarded(F f) {
        try {
            return f();
        } catch (const RuntimeError& e) {
            if (!error_) error_ = e;
            return false;
        }
    }
    bool Put(Variant v) {
        if (stack_.empty()) {
            if (request_) return Fail(err::InvalidCall, "not a JSON object");
            value_ = std::move(v);
            return true;
        }
        Frame& f = stack_.back();
        if (!f.object) {
            f.items.push_back(std::move(v));
            return true;
        }
        (f.key == "call" ? call_ : args_) = std::move(v);
        return true;
    }

    bool request_;
    bool syntax_ = false;
    bool seenTop_ = false;
    std::vector<Frame> stack_;
    Variant value_;
    std::optional<Variant> call_, args_;
    std::optional<RuntimeError> error_;
};

// Runs the reader over text that is known to be JSON; its error, if any, is
// raised with the prefix given.
void Read(ValueReader& r, const std::string& text, const std::string& prefix) {
    nlohmann::json::sax_parse(text, &r);
    if (r.error()) Raise(r.error()->number(), {}, prefix + r.error()->description());
}

// A command-line argument: JSON where it parses as JSON, else a text.
Variant FromWord(const std::string& w, size_t position) {
    if (!nlohmann::json::accept(w)) return Variant(w);
    ValueReader r(false);
    Read(r, w, "argument " + std::to_string(position) + ": ");
    return std::move(r.value());
}

void AppendError(std::string& out, int32_t number, const std::string& description) {
    out += "{\"error\":{\"number\":";
    out += std::to_string(number);
    out += ",\"description\":";
    AppendJsonText(out, description);
    out += "}}";
}

// Exit status of an answer: what went wrong, if anything.
enum Status { Ok = 0, MemberFailed = 1, BadRequest = 2 };

// Objects live for the whole run, as a host would hold them. A call text
// found once is not looked up by name again.
class Objects {
public:
    struct Target {
        Dispatchable* object = nullptr;
        BoundMember member;
    };

    Dispatchable* Get(const std::string& className) {
        auto it = objects_.find(UCase(className));
        if (it != objects_.end()) return it->second.get();
        auto obj = CreateObjectByName(className);
        if (!obj) return nullptr;
        return objects_.emplace(UCase(className), std::move(obj)).first->second.get();
    }
    const Target* Known(const std::string& call) const {
        const auto it = targets_.find(call);
        return it == targets_.end() ? nullptr : &it->second;
    }
    void Remember(const std::string& call, const Target& t) {
        // Spellings are the user's to vary; a bound keeps a long batch from
        // growing the cache without end.
        if (targets_.size() >= kMaxTargets) targets_.clear();
        targets_.emplace(call, t);
    }

private:
    static constexpr size_t kMaxTargets = 4096;
    std::map<std::string, std::unique_ptr<Dispatchable>> objects_;
    std::unordered_map<std::string, Target> targets_;
};

// Everything that can be wrong with the request itself is found before the
// member runs and answered as bad input; what the member raises is its own.
// readArgs fills args, which may already hold them. The answer is appended
// to out.
template <class ReadArgs>
Status Call(Objects& objects, const std::string& target, std::vector<Variant>& args, ReadArgs&& readArgs,
            std::string& out) {
    auto bad = [&out](int32_t number, const std::string& why) {
        AppendError(out, number, why);
        return BadRequest;
    };
    Objects::Target t;
    // A known call text passed every check below before; only its arguments are new.
    if (const Objects::Target* known = objects.Known(target)) {
        t = *known;
        try {
            readArgs(args);
        } catch (const RuntimeError& e) {
            return bad(e.number(), e.description());
        }
    } else {
        if (!IsValidUtf8(target)) return bad(err::InvalidCall, "the call is not valid UTF-8 text");
        const size_t dot = target.find('.');
        if (dot == std::string::npos || dot == 0 || dot + 1 == target.size())
            return bad(err::InvalidCall, "the call must be Class.Member, not '" + target + "'");
        const std::string className = target.substr(0, dot), member = target.substr(dot + 1);
        try {
            t.object = objects.Get(className);
            if (!t.object) return bad(err::ObjectNotSet, "unknown class '" + className + "'");
            readArgs(args);
        } catch (const RuntimeError& e) {
            return bad(e.number(), e.description());
        }
        t.member = t.object->BindCallable(member);
        if (!t.member.info) return bad(err::NoSuchMember, t.object->ClassName() + " has no member '" + member + "'");
        objects.Remember(target, t);
    }
    Dispatchable* obj = t.object;
    const MemberInfo* info = t.member.info;
    if (args.size() != info->params.size())
        return bad(err::WrongArgumentCount, obj->ClassName() + "." + info->name + " takes " +
                                                std::to_string(info->params.size()) + " arguments, not " +
                                                std::to_string(args.size()));
    Variant result;
    try {
        result = obj->CallBound(t.member, args);
    } catch (const RuntimeError& e) {
        AppendError(out, e.number(), e.description());
        return MemberFailed;
    }
    out += "{\"result\":";
    AppendJson(out, result);
    bool byRef = false;
    for (size_t i = 0; i < info->params.size() && i < args.size(); ++i) {
        if (!info->params[i].byRef) continue;
        out += byRef ? "," : ",\"out\":{";
        byRef = true;
        AppendJsonText(out, info->params[i].name);
        out += ':';
        AppendJson(out, args[i]);
    }
    if (byRef) out += '}';
    out += '}';
    return Ok;
}

// The reused state of a batch: nothing is allocated per line once the
// buffers have grown to the longest line.
struct Batch {
    Objects objects;
    std::string call;
    std::vector<Variant> args;
};

void AnswerLine(Batch& b, const std::string& line, std::string& out) {
    const auto none = [](std::vector<Variant>&) {};
    if (ReadPlainRequest(line, b.call, b.args)) {
        Call(b.objects, b.call, b.args, none, out);
        return;
    }
    const std::string malformed = "malformed request: ";
    ValueReader r(true);
    if (!nlohmann::json::sax_parse(line, &r)) {
        // A line that is no JSON at all is answered as such, whatever its
        // content the reader stopped at first.
        if (!r.error() || r.syntax() || !nlohmann::json::accept(line))
            return AppendError(out, err::InvalidCall, malformed + "not a JSON object");
        return AppendError(out, r.error()->number(), malformed + r.error()->description());
    }
    if (r.error()) return AppendError(out, r.error()->number(), malformed + r.error()->description());
    if (!r.call() || r.call()->type() != Variant::Type::String)
        return AppendError(out, err::InvalidCall,
                           malformed + "\"call\" must be a text such as \"CWindSnow.SnowMue1\"");
    std::optional<Variant>& args = r.args();
    if (args && args->type() != Variant::Type::Array)
        return AppendError(out, err::InvalidCall, malformed + "\"args\" must be an array");
    b.args = args ? args->asArray() : std::vector<Variant>{};
    Call(b.objects, r.call()->asString(), b.args, none, out);
}

std::string Signature(const MemberInfo& m) {
    std::ostringstream s;
    s << m.name << "(";
    for (size_t i = 0; i < m.params.size(); ++i) {
        const auto& p = m.params[i];
        s << (i ? ", " : "") << (p.byRef ? "ByRef " : "") << p.name << " As " << p.type;
    }
    s << ")";
    if (!m.result.empty()) s << " As " << m.result;
    return s.str();
}

struct CallOptions {
    std::string target;
    bool jsonl = false;
    bool list = false;
};

}  // namespace

void BatchStreams() {
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
}

void AnswerCallRequests(std::istream& in, std::ostream& out) {
    Batch batch;
    std::string line;
    std::string answer;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos) continue;
        answer.clear();
        AnswerLine(batch, line, answer);
        answer += '\n';
        out.write(answer.data(), static_cast<std::streamsize>(answer.size()));
        // A host that sends a line and waits gets its answer at once; a
        // batch already waiting is answered in large writes.
        if (in.rdbuf()->in_avail() <= 0) out.flush();
    }
    out.flush();
}

nlohmann::ordered_json VariantToJson(const Variant& v) { return ToJson(v); }
Variant VariantFromWord(const std::string& word, size_t position) { return FromWord(word, position); }

void AddCallCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<CallOptions>();
    CLI::App* cmd = app.add_subcommand(
        "call", "Call a member of a public object: call CWindSnow.SnowMue2 45 (arguments as JSON or text)");
    cmd->add_option("member", o->target, "Class.Member, e.g. CWindSnow.WindPressure_DIN1055_4_2005");
    // Everything after the member is an argument, negative numbers and [] included.
    cmd->prefix_command();
    cmd->footer("Arguments follow the member in its order: numbers, texts, arrays as JSON such as [].");
    cmd->add_flag("--jsonl", o->jsonl,
                  "Read requests {\"call\":\"CWindSnow.Member\",\"args\":[...]} one per line from standard input");
    cmd->add_flag("--list", o->list, "List the members of every public object with their arguments");
    cmd->callback([o, cmd, &ctx] {
        ApplyLanguage(ctx);
        if (o->list) {
            for (const auto& cls : PublicClassNames()) {
                auto obj = CreateObjectByName(cls);
                std::cout << cls << "\n";
                for (const auto& m : obj->Members()) std::cout << "  " << Signature(m) << "\n      " << m.doc << "\n";
            }
            ctx.exitCode = 0;
            return;
        }
        if (o->jsonl) {
            BatchStreams();
            AnswerCallRequests(std::cin, std::cout);
            ctx.exitCode = 0;
            return;
        }
        if (o->target.empty())
            throw CLI::ValidationError("call", "name a member as Class.Member, or use --jsonl or --list");
        Objects objects;
        std::vector<Variant> args;
        std::string answer;
        const Status status = Call(
            objects, o->target, args,
            [&](std::vector<Variant>& a) {
                for (const auto& w : cmd->remaining()) a.push_back(FromWord(w, a.size() + 1));
            },
            answer);
        std::cout << answer << "\n";
        ctx.exitCode = status;
    });
}

}  // namespace qvrl::cli
