// blocks read FILE: the records of a block file as JSON.
// blocks write FILE: the same JSON on standard input, written through the
// block writers as a session writes it, in one locked rewrite.

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <iostream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <variant>
#include <vector>

#include "commands.h"
#include "interchange/Records.h"
#include "interchange/TextFile.h"
#include "interchange/modAsciiRL.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

// Every session passes this factor: the file holds kN/cm², the records kN/m².
constexpr double kScale = 10000.0;
// What the JSON says when the file has no VERSION line to say it.
constexpr int16_t kCtrlNormUnknown = -99;

// Input the command refuses; the file is not touched.
struct BadInput : std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <class R>
struct FieldDef {
    const char* name;
    std::variant<int16_t R::*, int32_t R::*, double R::*, std::string R::*> member;
};

template <class R>
using Fields = std::vector<FieldDef<R>>;

const Fields<TownRec>& TownFields() {
    static const Fields<TownRec> f = {
        {"ID", &TownRec::ID},         {"BL_Name", &TownRec::BL_Name},
        {"BL_ID", &TownRec::BL_ID},   {"BL_ShortName", &TownRec::BL_ShortName},
        {"Reg_Name", &TownRec::Reg_Name}, {"Reg_ID", &TownRec::Reg_ID},
        {"LK_Name", &TownRec::LK_Name}, {"LK_ID", &TownRec::LK_ID},
        {"Gemeinde", &TownRec::Gemeinde}, {"GemeindeShort", &TownRec::GemeindeShort},
        {"Gem_ID", &TownRec::Gem_ID}, {"WZ", &TownRec::WZ},
        {"SZ", &TownRec::SZ},         {"PLZ", &TownRec::PLZ},
        {"AGS", &TownRec::AGS},       {"BemW", &TownRec::BemW},
        {"BemS", &TownRec::BemS},     {"Modified", &TownRec::Modified},
        {"Land_ID", &TownRec::Land_ID}, {"qb", &TownRec::qb},
        {"sk", &TownRec::sk},         {"vb", &TownRec::vb},
        {"hNN", &TownRec::hNN},       {"Land", &TownRec::Land},
        {"Land_ShortName", &TownRec::Land_ShortName},
    };
    return f;
}

const Fields<WindLoadRec>& WindFields() {
    static const Fields<WindLoadRec> f = {
        {"Norm", &WindLoadRec::Norm}, {"q0", &WindLoadRec::q0},   {"h", &WindLoadRec::h},
        {"wz", &WindLoadRec::wz},     {"cat", &WindLoadRec::cat}, {"qb", &WindLoadRec::qb},
        {"hNN", &WindLoadRec::hNN},   {"wqRef", &WindLoadRec::wqRef},
    };
    return f;
}

const Fields<SnowLoadRec>& SnowFields() {
    static const Fields<SnowLoadRec> f = {
        {"Norm", &SnowLoadRec::Norm}, {"s0", &SnowLoadRec::s0}, {"h", &SnowLoadRec::h}, {"sz", &SnowLoadRec::sz}};
    return f;
}

const Fields<LiveLoadRec>& LiveFields() {
    static const Fields<LiveLoadRec> f = {
        {"Norm", &LiveLoadRec::Norm},
        {"NormBez", &LiveLoadRec::NormBez},
        {"Wert", &LiveLoadRec::Wert},
        {"Zeile", &LiveLoadRec::Zeile},
        {"BT", &LiveLoadRec::BT},
        {"Kategorie", &LiveLoadRec::Kategorie},
        {"Unterkategorie", &LiveLoadRec::Unterkategorie},
        {"Nutzung", &LiveLoadRec::Nutzung},
        {"Langtext", &LiveLoadRec::Langtext},
        {"Kurztext", &LiveLoadRec::Kurztext},
        {"Wert2", &LiveLoadRec::Wert2},
        {"p", &LiveLoadRec::p},
        {"pAdd", &LiveLoadRec::pAdd},
        {"ZeileAdd", &LiveLoadRec::ZeileAdd},
        {"KategorieAdd", &LiveLoadRec::KategorieAdd},
        {"NutzungAdd", &LiveLoadRec::NutzungAdd},
        {"BspAdd", &LiveLoadRec::BspAdd},
    };
    return f;
}

const Fields<DeadLoadRec>& DeadFields() {
    static const Fields<DeadLoadRec> f = {
        {"Norm", &DeadLoadRec::Norm},     {"g0", &DeadLoadRec::g0}, {"Descr0", &DeadLoadRec::Descr0},
        {"g1", &DeadLoadRec::g1},         {"Descr1", &DeadLoadRec::Descr1},
        {"g2", &DeadLoadRec::g2},         {"Descr2", &DeadLoadRec::Descr2},
    };
    return f;
}

template <class R>
ordered_json ToJson(const R& rec, const Fields<R>& fields) {
    ordered_json j = ordered_json::object();
    for (const auto& f : fields) std::visit([&](auto m) { j[f.name] = rec.*m; }, f.member);
    return j;
}

template <class Int>
Int IntegerFrom(const ordered_json& v, const std::string& path) {
    constexpr auto lo = std::numeric_limits<Int>::min();
    constexpr auto hi = std::numeric_limits<Int>::max();
    const std::string msg =
        path + " must be a whole number from " + std::to_string(lo) + " to " + std::to_string(hi);
    if (!v.is_number_integer()) throw BadInput(msg);
    if (v.is_number_unsigned()) {
        const auto u = v.get<uint64_t>();
        if (u > static_cast<uint64_t>(hi)) throw BadInput(msg);
        return static_cast<Int>(u);
    }
    const auto i = v.get<int64_t>();
    if (i < lo || i > hi) throw BadInput(msg);
    return static_cast<Int>(i);
}

double NumberFrom(const ordered_json& v, const std::string& path) {
    if (!v.is_number()) throw BadInput(path + " must be a number");
    const double d = v.get<double>();
    if (!std::isfinite(d)) throw BadInput(path + " must be a finite number");
    return d;
}

// A line break would end the block line in the middle of a field.
std::string TextFrom(const ordered_json& v, const std::string& path) {
    if (!v.is_string()) throw BadInput(path + " must be a text");
    std::string s = v.get<std::string>();
    if (s.find_first_of("\r\n") != std::string::npos) throw BadInput(path + " must not hold a line break");
    return s;
}

template <class R>
R FromJson(const ordered_json& j, const Fields<R>& fields, const std::string& name) {
    if (!j.is_object()) throw BadInput(name + " must be a JSON object");
    R rec{};
    for (const auto& item : j.items()) {
        const std::string& key = item.key();
        const ordered_json& value = item.value();
        const FieldDef<R>* def = nullptr;
        for (const auto& f : fields)
            if (key == f.name) def = &f;
        if (!def) throw BadInput(name + ": unknown field '" + key + "'");
        const std::string path = name + "." + key;
        std::visit(
            [&](auto m) {
                using T = std::remove_reference_t<decltype(rec.*m)>;
                if constexpr (std::is_same_v<T, double>) rec.*m = NumberFrom(value, path);
                else if constexpr (std::is_same_v<T, std::string>) rec.*m = TextFrom(value, path);
                else rec.*m = IntegerFrom<T>(value, path);
            },
            def->member);
    }
    return rec;
}

struct Groups {
    bool roof = false, live = false, dead = false;
};

Groups GroupsFrom(const std::vector<std::string>& only) {
    Groups g;
    for (const auto& s : only) {
        if (s == "roof") g.roof = true;
        else if (s == "live") g.live = true;
        else if (s == "dead") g.dead = true;
    }
    return g;
}

struct Options {
    std::string file;
    std::vector<std::string> only;
    bool utf8 = false;
};

// The reader treats a missing file as empty, as hosts expect; a user who
// names one is told.
void CheckReadable(const std::string& file) {
    struct stat st {};
    if (::stat(file.c_str(), &st) != 0) {
        const int e = errno;
        throw BadInput("'" + file + "': " + (e == ENOENT ? std::string("no such file") : std::strerror(e)));
    }
    if (S_ISDIR(st.st_mode)) throw BadInput("'" + file + "' is a folder, not a block file");
    if (!S_ISREG(st.st_mode)) throw BadInput("'" + file + "' is not a regular file");
}

void Read(const Options& o) {
    CheckReadable(o.file);
    const Groups g = o.only.empty() ? Groups{true, true, true} : GroupsFrom(o.only);
    int16_t ctrlNorm = kCtrlNormUnknown;
    std::string selectCodes;
    ordered_json j;
    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
    LiveLoadRec live;
    DeadLoadRec dead;
    // The order of a session: the version of a file is taken as each line comes.
    if (g.roof) ReadRoofBlocks(o.file, town, wind, snow, kScale, ctrlNorm, selectCodes);
    if (g.live) ReadLiveBlocks(o.file, live, kScale, ctrlNorm, selectCodes);
    if (g.dead) ReadDeadBlocks(o.file, dead, kScale, ctrlNorm, selectCodes);
    j["FileVersion"] = State().FileVersion;
    j["ctrlNorm"] = ctrlNorm;
    j["selectCodes"] = selectCodes;
    if (g.roof) {
        j["town"] = ToJson(town, TownFields());
        j["wind"] = ToJson(wind, WindFields());
        j["snow"] = ToJson(snow, SnowFields());
    }
    if (g.live) j["live"] = ToJson(live, LiveFields());
    if (g.dead) j["dead"] = ToJson(dead, DeadFields());
    std::cout << j.dump(2, ' ', false, ordered_json::error_handler_t::replace) << "\n";
}

// Two levels are all a block record needs; the limit keeps a deep text from
// exhausting the parser's stack.
constexpr int kMaxJsonDepth = 64;

void CheckDepth(const std::string& text) {
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\') ++i;
            else if (c == '"') inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > kMaxJsonDepth)
                throw BadInput("standard input nests JSON deeper than " + std::to_string(kMaxJsonDepth) + " levels");
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
}

ordered_json ParseInput(const std::string& text) {
    CheckDepth(text);
    try {
        return ordered_json::parse(text);
    } catch (const ordered_json::out_of_range&) {
        throw BadInput("standard input holds a number beyond the range of a double");
    } catch (const ordered_json::exception& e) {
        throw BadInput(std::string("standard input is not valid JSON: ") + e.what());
    }
}

// A number the file would hold as another number is refused; its field is
// named with the limits in the record's units.
void CheckFields(const std::vector<WrittenField>& fields) {
    for (const auto& f : fields) {
        if (f.fits) continue;
        throw BadInput(f.record + "." + f.field + " = " + ordered_json(f.value).dump() +
                       " does not fit its block file field of " + std::to_string(f.width) + " characters with " +
                       std::to_string(f.decimals) + " decimals, which would then hold another number");
    }
}

void WarnUnencodable(const std::vector<WrittenField>& fields, const std::string& file) {
    for (const auto& f : fields)
        if (f.quoted && !CanEncode(f.text, TextEncoding::Windows1252))
            std::cerr << "qvroofload blocks write: warning: " << (f.record.empty() ? "" : f.record + ".") << f.field
                      << " holds characters that Windows-1252, the encoding of '" << file
                      << "', lacks; they were written as '?' (--utf8 writes the file as UTF-8)\n";
}

void Write(const Options& o, int& exitCode) {
    const std::string text{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    const ordered_json j = ParseInput(text);
    if (!j.is_object()) throw BadInput("standard input must hold one JSON object");
    static const std::set<std::string> known = {"FileVersion", "ctrlNorm", "selectCodes", "town",
                                                "wind",        "snow",     "live",        "dead"};
    for (const auto& item : j.items())
        if (!known.contains(item.key())) throw BadInput("unknown key '" + item.key() + "'");

    Groups present;
    present.roof = j.contains("town") || j.contains("wind") || j.contains("snow");
    present.live = j.contains("live");
    present.dead = j.contains("dead");
    Groups g = present;
    if (!o.only.empty()) {
        g = GroupsFrom(o.only);
        if ((g.roof && !present.roof) || (g.live && !present.live) || (g.dead && !present.dead))
            throw BadInput("--only names records that the JSON does not hold");
    }
    if (!g.roof && !g.live && !g.dead) throw BadInput("nothing to write: the JSON holds none of town, wind, snow, live, dead");
    if (g.roof && g.live)
        throw BadInput(
            "a roof rewrite drops the LIVELOAD block and a live rewrite drops TOWN, WINDLOAD and SNOWLOAD: "
            "choose with --only roof,dead or --only live,dead");

    // Everything is checked before the file is touched.
    if (j.contains("FileVersion")) (void)IntegerFrom<int16_t>(j["FileVersion"], "FileVersion");
    const int16_t ctrlNorm = j.contains("ctrlNorm") ? IntegerFrom<int16_t>(j["ctrlNorm"], "ctrlNorm") : kCtrlNormUnknown;
    const std::string selectCodes = j.contains("selectCodes") ? TextFrom(j["selectCodes"], "selectCodes") : "";
    const auto part = [&](const char* key) { return j.contains(key) ? j[key] : ordered_json::object(); };
    const TownRec town = FromJson(part("town"), TownFields(), "town");
    const WindLoadRec wind = FromJson(part("wind"), WindFields(), "wind");
    const SnowLoadRec snow = FromJson(part("snow"), SnowFields(), "snow");
    const LiveLoadRec live = FromJson(part("live"), LiveFields(), "live");
    const DeadLoadRec dead = FromJson(part("dead"), DeadFields(), "dead");
    std::vector<WrittenField> fields;
    const auto add = [&](std::vector<WrittenField> more) { fields.insert(fields.end(), more.begin(), more.end()); };
    if (g.roof) add(RoofFieldsWritten(town, wind, snow, kScale, selectCodes));
    if (g.live) add(LiveFieldsWritten(live, kScale));
    if (g.dead) add(DeadFieldsWritten(dead, kScale));
    CheckFields(fields);
    try {
        (void)CheckRewriteTarget(o.file);
    } catch (const RuntimeError& e) {
        throw BadInput(e.description());
    }

    // One rewrite under the file's lock: the writers of a session, one rename.
    BlockFileRewrite rewrite(o.file);
    const bool was1252 = rewrite.Encoding() == TextEncoding::Windows1252;
    if (was1252 && o.utf8) rewrite.SetEncoding(TextEncoding::Utf8);
    if (g.roof) rewrite.Roof(town, wind, snow, true, kScale, ctrlNorm, selectCodes);
    if (g.live) rewrite.Live(live, true, kScale, ctrlNorm, selectCodes);
    if (g.dead) rewrite.Dead(dead, true, kScale);
    rewrite.Commit();
    if (was1252 && !o.utf8) WarnUnencodable(fields, o.file);
    exitCode = 0;
}

void AddOnly(CLI::App* cmd, Options& o, const char* what) {
    cmd->add_option("--only", o.only, what)->delimiter(',')->check(CLI::IsMember({"roof", "live", "dead"}));
}

}  // namespace

void AddBlocksCommand(CLI::App& app, Context& ctx) {
    CLI::App* blocks = app.add_subcommand("blocks", "Read or write the block file a host exchanges with the dialogs");
    blocks->require_subcommand(1);

    auto ro = std::make_shared<Options>();
    CLI::App* read = blocks->add_subcommand("read", "Print the roof, live and dead records of a block file as JSON");
    read->add_option("file", ro->file, "The block file")->required();
    AddOnly(read, *ro, "Only these records: roof (town, wind, snow), live, dead; comma-separated");
    read->callback([ro, &ctx] {
        try {
            Read(*ro);
            ctx.exitCode = 0;
        } catch (const BadInput& e) {
            std::cerr << "qvroofload blocks read: " << e.what() << "\n";
            ctx.exitCode = 2;
        }
    });

    auto wo = std::make_shared<Options>();
    CLI::App* write = blocks->add_subcommand(
        "write", "Rewrite a block file from JSON on standard input, in the form 'blocks read' prints");
    write->add_option("file", wo->file, "The block file; created when missing")->required();
    AddOnly(write, *wo, "Only these writers: roof or live, and dead (default: the records the JSON holds)");
    write->add_flag("--utf8", wo->utf8,
                    "Write a Windows-1252 file as UTF-8, so that characters that code page lacks survive");
    write->footer(
        "Records missing from the JSON, and fields missing from a record, are zero; ctrlNorm defaults to -99.\n"
        "Loads are in kN/m2, as 'blocks read' prints them. A number too wide for its field in the file is\n"
        "refused. The writers of one call replace the file in one step, and a second writer of the same\n"
        "file waits for the first.");
    write->callback([wo, &ctx] {
        try {
            Write(*wo, ctx.exitCode);
        } catch (const BadInput& e) {
            std::cerr << "qvroofload blocks write: " << e.what() << " (the file was not changed)\n";
            ctx.exitCode = 2;
        }
    });
}

}  // namespace qvrl::cli
