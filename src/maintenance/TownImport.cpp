#include "maintenance/TownImport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "interchange/TextFile.h"
#include "location/modAGSMdb.h"
#include "store/modDAO.h"
#include "location/modSLZMdb.h"
#include "support/errors.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

std::string JoinFaults(const std::vector<std::string>& faults) {
    std::string s;
    for (const std::string& f : faults) s += (s.empty() ? "" : "\n") + f;
    return s;
}

// Collects the bad records of a file; past the first few only counts them,
// so that a file in the wrong format does not bury the message.
class Faults {
public:
    explicit Faults(std::string file) : file_(std::move(file)) {}
    void Add(int32_t line, const std::string& what) {
        if (++count_ <= kShown) list_.push_back(file_ + ":" + std::to_string(line) + ": " + what);
    }
    void AddFile(const std::string& what) {
        if (++count_ <= kShown) list_.push_back(file_ + ": " + what);
    }
    void ThrowIfAny() const {
        if (count_ == 0) return;
        std::vector<std::string> l = list_;
        if (count_ > kShown) l.push_back("... and " + std::to_string(count_ - kShown) + " more bad records");
        throw TownInputError(std::move(l));
    }

private:
    static constexpr int32_t kShown = 20;
    std::string file_;
    std::vector<std::string> list_;
    int32_t count_ = 0;
};

std::string FileName(const std::string& path) { return fs::path(path).filename().string(); }

TextLines ReadInput(const std::string& path) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) Raise(err::FileNotFound, {}, path + ": no such file");
    return DecodeText(ReadFileBytes(path));
}

bool AllDigits(std::string_view s) {
    return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Characters of a UTF-8 text: the byte offset where each starts, and the end.
std::vector<size_t> CharStarts(std::string_view s) {
    std::vector<size_t> o;
    for (size_t i = 0; i < s.size(); ++i)
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80) o.push_back(i);
    o.push_back(s.size());
    return o;
}

size_t CharCount(std::string_view s) { return CharStarts(s).size() - 1; }

// Characters from..to (1-based, inclusive); those past the end count as blank.
std::string CharColumns(std::string_view s, const std::vector<size_t>& starts, size_t from, size_t to) {
    const size_t n = starts.size() - 1;
    if (from > n) return {};
    const size_t last = std::min(to, n);
    return std::string(s.substr(starts[from - 1], starts[last] - starts[from - 1]));
}

// One CSV line into cells. A quoted cell may hold the separator and "" for a
// quote; false for a quote left open.
bool SplitCsv(std::string_view line, char sep, std::vector<std::string>& cells) {
    cells.clear();
    std::string cur;
    bool quoted = false, wasQuoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c != '"')
                cur += c;
            else if (i + 1 < line.size() && line[i + 1] == '"')
                cur += '"', ++i;
            else
                quoted = false;
        } else if (c == '"' && Trim(cur).empty() && !wasQuoted) {
            cur.clear();
            quoted = wasQuoted = true;
        } else if (c == sep) {
            cells.push_back(wasQuoted ? cur : Trim(cur));
            cur.clear();
            wasQuoted = false;
        } else if (!(wasQuoted && (c == ' ' || c == '\t'))) {
            cur += c;
        }
    }
    if (quoted) return false;
    cells.push_back(wasQuoted ? cur : Trim(cur));
    return true;
}

bool BlankCells(const std::vector<std::string>& cells) {
    return std::all_of(cells.begin(), cells.end(), [](const std::string& c) { return Trim(c).empty(); });
}

// The wind list numbers its states its own way; the shared code table maps them.
int32_t WlzStateNumber(int32_t officialNumber) {
    for (const ZoneStateCode& c : ZoneStateCodes())
        if (c.SlzNumber == officialNumber) return c.WlzNumber;
    return 0;
}

struct AustrianState {
    const char* name;
    const char* shortName;
};
constexpr AustrianState kAustrianStates[] = {
    {"", ""},
    {"Burgenland", "Bgld"},
    {"Kärnten", "Ktn"},
    {"Niederösterreich", "NÖ"},
    {"Oberösterreich", "OÖ"},
    {"Salzburg", "Sbg"},
    {"Steiermark", "Stmk"},
    {"Tirol", "T"},
    {"Vorarlberg", "Vbg"},
    {"Wien", "W"},
};

constexpr int32_t kGermany = 50;
constexpr int32_t kAustria = 51;
constexpr const char* kGermanyName = "Deutschland";
constexpr const char* kGermanyShort = "D";
constexpr const char* kAustriaName = "Österreich";
constexpr const char* kAustriaShort = "A";

// ---------------------------------------------------------------------------
// Writing: the databases of one import, committed together.

class Batch {
public:
    Database& Open(const std::string& path) {
        auto db = DBEngine::OpenDatabase(path, {}, false);
        db->BeginTrans();
        dbs_.push_back(db);
        return *db;
    }
    void Commit() {
        for (auto& db : dbs_) db->CommitTrans();
        committed_ = true;
    }
    ~Batch() {
        if (committed_) return;
        for (auto& db : dbs_) {
            try {
                db->Rollback();
            } catch (const RuntimeError&) {
                // The engine ends an open transaction with the connection anyway.
            }
        }
    }

private:
    std::vector<std::shared_ptr<Database>> dbs_;
    bool committed_ = false;
};

struct Cell {
    Cell(const char* c, const Variant& v) : column(c), value(v) {}
    const char* column;
    Variant value;
};

// A row as the file has it: key, the columns the file decides, and those a
// new row starts with.
struct WantedRow {
    std::string key;
    std::vector<Cell> managed;
    std::vector<Cell> fresh;
};

enum class KeyKind { Text, Number };

std::string KeyOf(const Variant& v, KeyKind kind) {
    if (kind == KeyKind::Text) return Trim(NzText(v));
    if (v.isNull() || !v.isNumeric()) return {};
    const double d = v.toDouble();
    if (d != std::floor(d) || std::fabs(d) > 1e15) return DoubleToText(d);
    return std::to_string(static_cast<long long>(d));
}

// Null is never equal: a column the reader expects as text gets "" instead.
bool Same(const Variant& stored, const Variant& wanted) {
    if (stored.isNull()) return false;
    if (wanted.type() == Variant::Type::String)
        return stored.type() == Variant::Type::String && stored.asString() == wanted.asString();
    return stored.isNumeric() && stored.toDouble() == wanted.toDouble();
}

int32_t NextId(Database& db, const std::string& table) {
    auto rs = db.OpenRecordset("SELECT TOP 1 ID FROM " + table + " ORDER BY ID DESC", dao::dbOpenSnapshot);
    if (rs->EOF_()) return 1;
    const double top = NzNumber(rs->Fields("ID"));
    if (top >= 2147483647.0) Raise(err::Overflow, {}, table + ": no row number left above " + DoubleToText(top));
    return top < 0.0 ? 1 : static_cast<int32_t>(top) + 1;
}

// Lays the wanted rows over the rows the query selects: equal ones stay,
// differing ones get the file's values in the managed columns, missing ones
// are appended. idTable names the table whose ID a new row continues.
TableTally Merge(Database& db, TableTally t, const std::string& query, const char* keyColumn, KeyKind kind,
                 const std::string& idTable, const std::vector<WantedRow>& rows) {
    std::unordered_map<std::string, size_t> wanted;
    wanted.reserve(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) wanted.emplace(rows[i].key, i);
    std::vector<bool> seen(rows.size(), false);
    int32_t nextId = idTable.empty() ? 0 : NextId(db, idTable);

    auto rs = db.OpenRecordset(query, dao::dbOpenDynaset);
    Fields& f = rs->Fields();
    Field& key = f.Item(keyColumn);
    while (!rs->EOF_()) {
        const auto it = wanted.find(KeyOf(key.Value(), kind));
        if (it == wanted.end()) {
            ++t.untouched;
        } else {
            seen[it->second] = true;
            const WantedRow& w = rows[it->second];
            bool differs = false;
            for (const Cell& c : w.managed) differs = differs || !Same(f.Item(c.column).Value(), c.value);
            if (differs) {
                rs->Edit();
                for (const Cell& c : w.managed)
                    if (!Same(f.Item(c.column).Value(), c.value)) f.Item(c.column).Value(c.value);
                rs->Update();
                ++t.updated;
            } else {
                ++t.unchanged;
            }
        }
        rs->MoveNext();
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        if (seen[i]) continue;
        rs->AddNew();
        if (!idTable.empty()) {
            if (nextId == INT32_MAX) Raise(err::Overflow, {}, idTable + ": no row number left for a new row");
            f.Item("ID").Value(Variant(nextId++));
        }
        for (const Cell& c : rows[i].managed) f.Item(c.column).Value(c.value);
        for (const Cell& c : rows[i].fresh) f.Item(c.column).Value(c.value);
        rs->Update();
        ++t.inserted;
    }
    rs->Close();
    return t;
}

// Built one by one: brace lists of tagged values trip GCC's uninitialised-use check.
struct Cells {
    Cells& operator()(const char* column, const Variant& v) {
        items.emplace_back(column, v);
        return *this;
    }
    std::vector<Cell> items;
};

std::vector<Cell> FreshZones(bool eurocode) {
    Cells c;
    for (const char* n : {"WZ", "SZ", "BemW", "BemS"}) c(n, Variant(std::string()));
    if (eurocode)
        for (const char* n : {"qb", "vb", "sk", "hNN"}) c(n, Variant(0.0));
    return std::move(c.items);
}

}  // namespace

TownInputError::TownInputError(std::vector<std::string> faults)
    : std::runtime_error(JoinFaults(faults)), faults_(std::move(faults)) {}

// ---------------------------------------------------------------------------
// GV100AD

Gv100Directory ReadGv100ad(const std::string& path) {
    const TextLines text = ReadInput(path);
    Faults faults(FileName(path));
    struct Named {
        std::string name;
        int32_t line;
    };
    std::map<std::string, Named> states, regions, counties;
    std::vector<std::string> countyOrder;
    std::unordered_map<std::string, int32_t> agsLine;
    struct RawTown {
        int32_t line;
        std::string ags, name, plz;
    };
    std::vector<RawTown> raw;
    std::string stand;
    int32_t standLine = 0;

    for (size_t i = 0; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        const std::string& line = text.lines[i];
        if (Trim(line).empty()) continue;
        const std::vector<size_t> starts = CharStarts(line);
        const size_t n = starts.size() - 1;
        if (n > 220) {
            faults.Add(lineNo, std::to_string(n) + " characters; a GV100AD record has 220");
            continue;
        }
        if (n < 22) {
            faults.Add(lineNo, "record too short (" + std::to_string(n) + " characters) to hold its key");
            continue;
        }
        auto col = [&](size_t from, size_t to) { return CharColumns(line, starts, from, to); };
        const std::string type = col(1, 2);
        const std::string date = col(3, 10);
        if (!AllDigits(date)) {
            faults.Add(lineNo, "columns 3-10 '" + date + "' are no Gebietsstand (yyyymmdd)");
            continue;
        }
        if (stand.empty()) {
            stand = date;
            standLine = lineNo;
        } else if (date != stand) {
            faults.Add(lineNo,
                       "Gebietsstand " + date + " differs from " + stand + " of line " + std::to_string(standLine));
            continue;
        }
        const std::string land = col(11, 12), rb = col(13, 13), kreis = col(14, 15), name = Trim(col(23, 72));
        const auto needName = [&](const char* what) {
            if (name.empty()) faults.Add(lineNo, std::string(what) + " without a name (columns 23-72)");
            return !name.empty();
        };
        const auto checkLand = [&]() {
            const bool ok = AllDigits(land) && std::stoi(land) >= 1 && std::stoi(land) <= 16;
            if (!ok) faults.Add(lineNo, "state number '" + land + "' (columns 11-12) is not 01 to 16");
            return ok;
        };
        const auto enter = [&](std::map<std::string, Named>& m, const std::string& key, const char* what) {
            const auto [it, fresh] = m.emplace(key, Named{name, lineNo});
            if (!fresh)
                faults.Add(lineNo,
                           std::string(what) + " " + key + " already on line " + std::to_string(it->second.line));
            return fresh;
        };
        if (type == "10") {
            if (checkLand() && needName("state")) enter(states, land, "state");
        } else if (type == "20") {
            if (!checkLand()) continue;
            if (!AllDigits(rb) || rb == "0")
                faults.Add(lineNo, "region number '" + rb + "' (column 13) is not 1 to 9");
            else if (needName("region"))
                enter(regions, land + rb, "region");
        } else if (type == "30") {
            if (checkLand() && !AllDigits(col(13, 14)))
                faults.Add(lineNo, "region key '" + col(13, 14) + "' (columns 13-14) is not two digits");
        } else if (type == "40") {
            if (!checkLand()) continue;
            if (!AllDigits(rb + kreis))
                faults.Add(lineNo, "county key '" + rb + kreis + "' (columns 13-15) is not three digits");
            else if (needName("county") && enter(counties, land + rb + kreis, "county"))
                countyOrder.push_back(land + rb + kreis);
        } else if (type == "50") {
            if (checkLand() && !AllDigits(rb + kreis + col(19, 22)))
                faults.Add(lineNo,
                           "association key '" + rb + kreis + col(19, 22) + "' (columns 13-15, 19-22) is not digits");
        } else if (type == "60") {
            const std::string ags = col(11, 18), plz = Trim(col(166, 170));
            if (!checkLand()) continue;
            if (!AllDigits(ags)) {
                faults.Add(lineNo, "AGS '" + ags + "' (columns 11-18) is not eight digits");
                continue;
            }
            if (!needName("municipality")) continue;
            if (!plz.empty() && (plz.size() != 5 || !AllDigits(plz))) {
                faults.Add(lineNo, "postcode '" + plz + "' (columns 166-170) is not five digits");
                continue;
            }
            const auto [it, fresh] = agsLine.emplace(ags, lineNo);
            if (!fresh) {
                faults.Add(lineNo, "AGS " + ags + " already on line " + std::to_string(it->second));
                continue;
            }
            raw.push_back({lineNo, ags, name, plz});
        } else {
            faults.Add(lineNo, "record type '" + type + "' (columns 1-2) is none of 10, 20, 30, 40, 50, 60");
        }
    }
    if (raw.empty()) faults.AddFile("no municipality records (type 60): not a GV100AD file");
    faults.ThrowIfAny();

    Gv100Directory d;
    d.stand = stand.substr(6, 2) + "." + stand.substr(4, 2) + "." + stand.substr(0, 4);
    d.states = static_cast<int32_t>(states.size());
    d.regions = static_cast<int32_t>(regions.size());
    d.counties = static_cast<int32_t>(counties.size());
    d.municipalities = static_cast<int32_t>(raw.size());
    auto place = [&](DirectoryTown& t, const std::string& key5, int32_t line) {
        t.BL_ID = key5.substr(0, 2);
        t.Reg_ID = key5.substr(2, 1);
        t.LK_ID = key5.substr(3, 2);
        const auto s = states.find(t.BL_ID);
        if (s == states.end())
            faults.Add(line, "state " + t.BL_ID + " has no record of type 10");
        else
            t.BL_Name = s->second.name;
        if (t.Reg_ID != "0") {
            const auto r = regions.find(key5.substr(0, 3));
            if (r == regions.end())
                faults.Add(line, "region " + key5.substr(0, 3) + " has no record of type 20");
            else
                t.Reg_Name = r->second.name;
        }
        // County 00 holds areas outside every county (shared and coastal waters).
        const auto c = counties.find(key5);
        if (c != counties.end())
            t.LK_Name = c->second.name;
        else if (t.LK_ID != "00")
            faults.Add(line, "county " + key5 + " has no record of type 40");
    };
    for (const RawTown& r : raw) {
        DirectoryTown t;
        t.line = r.line;
        t.AGS = r.ags;
        place(t, r.ags.substr(0, 5), r.line);
        t.Gem_ID = r.ags.substr(5, 3);
        t.Gemeinde = r.name;
        t.PLZ = r.plz;
        d.towns.push_back(std::move(t));
    }
    for (const std::string& k : countyOrder) {
        if (agsLine.count(k + "000")) continue;  // a county-free city is its own county
        DirectoryTown t;
        t.line = counties[k].line;
        t.AGS = k + "000";
        place(t, k, t.line);
        t.Gem_ID = "000";
        d.towns.push_back(std::move(t));
    }
    faults.ThrowIfAny();
    return d;
}

TownImportReport ImportGv100ad(const std::string& path, const std::string& qvrlDb) {
    const Gv100Directory d = ReadGv100ad(path);
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    TownImportReport report;
    report.source = FileName(path) + " (Gebietsstand " + d.stand + "): " + std::to_string(d.states) + " states, " +
                    std::to_string(d.regions) + " regions, " + std::to_string(d.counties) + " counties, " +
                    std::to_string(d.municipalities) + " municipalities";

    std::vector<WantedRow> german, eurocode, slz, wlz;
    for (const DirectoryTown& t : d.towns) {
        Cells common;
        common("AGS", t.AGS)("BL_ID", t.BL_ID)("BL_Name", t.BL_Name)("Reg_ID", t.Reg_ID)("Reg_Name", t.Reg_Name)(
            "LK_ID", t.LK_ID)("LK_Name", t.LK_Name)("Gem_ID", t.Gem_ID)("Gemeinde", t.Gemeinde)("PLZ", t.PLZ);
        german.push_back({t.AGS, common.items, FreshZones(false)});
        const int32_t bl = std::stoi(t.BL_ID);
        common("Land_ID", kGermany)("Land", kGermanyName)("Land_ShortName", kGermanyShort)("BL_ShortName",
                                                                                           GetStateShort(bl));
        eurocode.push_back({t.AGS, std::move(common.items), FreshZones(true)});
        const int32_t key = std::stoi(t.AGS);
        const std::string numKey = std::to_string(key);
        const int32_t rb = std::stoi(t.Reg_ID), lk = std::stoi(t.LK_ID);
        Cells s, sFresh, w, wFresh;
        s("Bundesland", bl)("RegBez", rb)("Kreis", lk)("Landkreis", t.LK_Name)("Gemeinde", t.Gemeinde)(
            "KEY", static_cast<double>(key));
        sFresh("Schneelastzone", "")("Fußnote(n)", "");
        slz.push_back({numKey, std::move(s.items), std::move(sFresh.items)});
        w("ID", key)("LandID", WlzStateNumber(bl))("BezID", rb)("Bezirk", t.Reg_Name)("KreisID", lk)(
            "Kreis", t.LK_Name)("Gemeinde", t.Gemeinde);
        wFresh("WLZ", "");
        wlz.push_back({numKey, std::move(w.items), std::move(wFresh.items)});
    }

    const fs::path folder = fs::path(qvrlDb).parent_path();
    Batch batch;
    Database& main = batch.Open(qvrlDb);
    const std::string mainName = FileName(qvrlDb);
    report.tables.push_back(
        Merge(main, {mainName, "slzwlz"}, "SELECT * FROM slzwlz", "AGS", KeyKind::Text, "slzwlz", german));
    report.tables.push_back(Merge(main, {mainName, "slzwlz1 (Land_ID 50)"}, "SELECT * FROM slzwlz1 WHERE Land_ID = 50",
                                  "AGS", KeyKind::Text, "slzwlz1", eurocode));
    auto lists = [&](const char* const(&files)[2], const char* table, const char* keyColumn, const std::string& idTable,
                     const std::vector<WantedRow>& rows) {
        for (const char* f : files) {
            const std::string p = (folder / f).string();
            if (!FileExists(p)) {
                report.notes.push_back(std::string(f) + ": not beside " + mainName + ", left out");
                continue;
            }
            Database& db = batch.Open(p);
            report.tables.push_back(Merge(db, {f, table}, std::string("SELECT * FROM ") + table, keyColumn,
                                          KeyKind::Number, idTable, rows));
        }
    };
    lists(kSlzListFiles, "slz", "KEY", "slz", slz);
    lists(kWlzListFiles, "wlz", "ID", "", wlz);
    batch.Commit();
    return report;
}

// ---------------------------------------------------------------------------
// Zone assignments

namespace {

struct ZoneColumn {
    const char* name;
    bool number;
    size_t maxChars;   // texts
    bool germanTable;  // also in slzwlz
};
constexpr ZoneColumn kZoneColumns[] = {
    {"WZ", false, 10, true}, {"SZ", false, 10, true}, {"BemW", false, 255, true}, {"BemS", false, 255, true},
    {"sk", true, 0, false},  {"qb", true, 0, false},  {"vb", true, 0, false},     {"hNN", true, 0, false},
};

struct ZoneRow {
    int32_t line = 0;
    std::string key;
    std::vector<Variant> values;  // one per header column after AGS
    bool used = false;
};

// A decimal number filling the cell, with a point or a comma.
std::optional<double> ParseDecimal(std::string s) {
    if (s.find('.') == std::string::npos) std::replace(s.begin(), s.end(), ',', '.');
    if (s.empty() || s.find_first_not_of("0123456789.-+eE") != std::string::npos) return std::nullopt;
    if (s.front() == '+') s.erase(0, 1);
    double v = 0.0;
    const char* end = s.data() + s.size();
    const auto r = std::from_chars(s.data(), end, v);
    if (r.ec != std::errc() || r.ptr != end || !std::isfinite(v)) return std::nullopt;
    return v;
}

// A cell's value for its column; the fault, or "" when it is good.
std::string ZoneValue(const ZoneColumn& z, const std::string& cell, Variant& value) {
    const std::string name = z.name;
    if (!z.number) {
        const size_t n = CharCount(cell);
        if (n > z.maxChars)
            return name + " has " + std::to_string(n) + " characters, at most " + std::to_string(z.maxChars) + " fit";
        value = Variant(cell);
        return {};
    }
    if (cell.empty()) {
        value = Variant(0.0);
        return {};
    }
    const auto d = ParseDecimal(cell);
    if (!d) return name + " '" + cell + "' is not a number";
    if (*d < 0.0 && name != "hNN") return name + " " + cell + " is negative";
    value = Variant(*d);
    return {};
}

std::string WidthsText(const std::vector<size_t>& widths) {
    std::string s;
    for (size_t i = 0; i < widths.size(); ++i)
        s += (i == 0 ? "" : i + 1 == widths.size() ? " or " : ", ") + std::to_string(widths[i]);
    return s;
}

TableTally ApplyZones(Database& db, TableTally t, const std::string& query, const std::vector<const ZoneColumn*>& cols,
                      const std::vector<size_t>& valueIndex, std::unordered_map<std::string, ZoneRow*>& keys,
                      const std::vector<size_t>& widths) {
    auto rs = db.OpenRecordset(query, dao::dbOpenDynaset);
    Fields& f = rs->Fields();
    Field& ags = f.Item("AGS");
    while (!rs->EOF_()) {
        const std::string a = Trim(NzText(ags.Value()));
        ZoneRow* row = nullptr;
        for (auto w = widths.rbegin(); w != widths.rend() && !row; ++w) {
            if (a.size() < *w) continue;
            const auto it = keys.find(a.substr(0, *w));
            if (it != keys.end()) row = it->second;
        }
        if (!row) {
            ++t.untouched;
        } else {
            row->used = true;
            bool differs = false;
            for (size_t k = 0; k < cols.size(); ++k)
                differs = differs || !Same(f.Item(cols[k]->name).Value(), row->values[valueIndex[k]]);
            if (differs) {
                rs->Edit();
                for (size_t k = 0; k < cols.size(); ++k) {
                    const Variant& v = row->values[valueIndex[k]];
                    if (!Same(f.Item(cols[k]->name).Value(), v)) f.Item(cols[k]->name).Value(v);
                }
                rs->Update();
                ++t.updated;
            } else {
                ++t.unchanged;
            }
        }
        rs->MoveNext();
    }
    rs->Close();
    return t;
}

}  // namespace

TownImportReport ImportZones(const std::string& path, const std::string& qvrlDb, int32_t landId) {
    if (landId != kGermany && landId != kAustria)
        Raise(err::InvalidCall, {}, "Land " + std::to_string(landId) + ": zones load for 50 (Germany) or 51 (Austria)");
    const std::vector<size_t> widths =
        landId == kGermany ? std::vector<size_t>{2, 3, 5, 8} : std::vector<size_t>{1, 3, 5};
    const TextLines text = ReadInput(path);
    const std::string name = FileName(path);
    Faults faults(name);

    std::vector<const ZoneColumn*> header;  // after AGS
    char sep = ';';
    bool haveHeader = false;
    std::vector<ZoneRow> rows;
    std::unordered_map<std::string, int32_t> keyLine;
    std::vector<std::string> cells;
    for (size_t i = 0; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        const std::string line = Trim(text.lines[i]);
        if (line.empty() || line[0] == '#') continue;
        if (!haveHeader) {
            haveHeader = true;
            sep = line.find(';') != std::string::npos ? ';' : ',';
            if (!SplitCsv(line, sep, cells)) {
                faults.Add(lineNo, "a quote is left open");
                break;
            }
            if (UCase(cells[0]) != "AGS") {
                faults.Add(lineNo, "the first column must be AGS, not '" + cells[0] + "'");
                break;
            }
            for (size_t c = 1; c < cells.size(); ++c) {
                const ZoneColumn* z = nullptr;
                for (const ZoneColumn& k : kZoneColumns)
                    if (UCase(k.name) == UCase(cells[c])) z = &k;
                if (!z)
                    faults.Add(lineNo, "column '" + cells[c] + "' is none of WZ, SZ, BemW, BemS, sk, qb, vb, hNN");
                else if (std::find(header.begin(), header.end(), z) != header.end())
                    faults.Add(lineNo, "column " + std::string(z->name) + " twice");
                else
                    header.push_back(z);
            }
            if (cells.size() < 2) faults.Add(lineNo, "no zone columns after AGS");
            faults.ThrowIfAny();  // rows cannot be read against a bad header
            continue;
        }
        if (!SplitCsv(line, sep, cells)) {
            faults.Add(lineNo, "a quote is left open");
            continue;
        }
        if (cells.size() > header.size() + 1) {
            faults.Add(lineNo, std::to_string(cells.size()) + " cells, but the header has " +
                                   std::to_string(header.size() + 1));
            continue;
        }
        cells.resize(header.size() + 1);
        ZoneRow r;
        r.line = lineNo;
        r.key = cells[0];
        if (!AllDigits(r.key) || std::find(widths.begin(), widths.end(), r.key.size()) == widths.end()) {
            faults.Add(lineNo, "key '" + r.key + "' is not an AGS prefix of " + WidthsText(widths) + " digits");
            continue;
        }
        std::string fault;
        for (size_t c = 0; c < header.size() && fault.empty(); ++c) {
            Variant v;
            fault = ZoneValue(*header[c], cells[c + 1], v);
            r.values.push_back(std::move(v));
        }
        if (!fault.empty()) {
            faults.Add(lineNo, fault);
            continue;
        }
        const auto [it, fresh] = keyLine.emplace(r.key, lineNo);
        if (!fresh) {
            faults.Add(lineNo, "key " + r.key + " already on line " + std::to_string(it->second));
            continue;
        }
        rows.push_back(std::move(r));
    }
    if (!haveHeader)
        faults.AddFile("empty: the first line must be the header, AGS and the zone columns");
    else if (rows.empty())
        faults.AddFile("no rows under the header");
    faults.ThrowIfAny();
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    std::unordered_map<std::string, ZoneRow*> keys;
    for (ZoneRow& r : rows) keys.emplace(r.key, &r);
    std::vector<size_t> perWidth(widths.size(), 0);
    for (const ZoneRow& r : rows)
        perWidth[static_cast<size_t>(std::find(widths.begin(), widths.end(), r.key.size()) - widths.begin())]++;

    TownImportReport report;
    report.untouchedMeaning = "covered by no key";
    report.source = name + ": " + std::to_string(rows.size()) + " keys (";
    for (size_t w = 0; w < widths.size(); ++w)
        report.source += (w ? ", " : "") + std::to_string(perWidth[w]) + " of " + std::to_string(widths[w]) +
                         (widths[w] == 1 ? " digit" : " digits");
    report.source += ") for Land_ID " + std::to_string(landId);

    std::vector<const ZoneColumn*> germanCols;
    std::vector<size_t> germanIdx, enIdx;
    for (size_t c = 0; c < header.size(); ++c) {
        enIdx.push_back(c);
        if (header[c]->germanTable) germanCols.push_back(header[c]), germanIdx.push_back(c);
    }
    const std::string mainName = FileName(qvrlDb);
    Batch batch;
    Database& db = batch.Open(qvrlDb);
    if (landId == kGermany) {
        if (germanCols.empty())
            report.notes.push_back("slzwlz has none of the columns of the file, left out");
        else
            report.tables.push_back(
                ApplyZones(db, {mainName, "slzwlz"}, "SELECT * FROM slzwlz", germanCols, germanIdx, keys, widths));
    }
    const std::string label = "slzwlz1 (Land_ID " + std::to_string(landId) + ")";
    report.tables.push_back(ApplyZones(db, {mainName, label},
                                       "SELECT * FROM slzwlz1 WHERE Land_ID = " + std::to_string(landId), header, enIdx,
                                       keys, widths));
    batch.Commit();

    int32_t unused = 0;
    std::string first;
    for (const ZoneRow& r : rows)
        if (!r.used && unused++ < 5)
            first += (first.empty() ? "" : ", ") + r.key + " (line " + std::to_string(r.line) + ")";
    if (unused)
        report.notes.push_back(std::to_string(unused) + (unused == 1 ? " key" : " keys") +
                               " applied to no town: " + first + (unused > 5 ? ", ..." : ""));
    return report;
}

// ---------------------------------------------------------------------------
// Austrian municipality list

TownImportReport ImportAtMunicipalities(const std::string& path, const std::string& qvrlDb) {
    const TextLines text = ReadInput(path);
    const std::string name = FileName(path);
    Faults faults(name);

    constexpr size_t kNone = static_cast<size_t>(-1);
    size_t cKnz = kNone, cName = kNone, cCode = kNone, cPlz = kNone, cMore = kNone;
    size_t headerLine = kNone;
    std::vector<std::string> cells;
    for (size_t i = 0; i < text.lines.size() && headerLine == kNone; ++i) {
        cKnz = cName = cCode = cPlz = cMore = kNone;
        if (!SplitCsv(text.lines[i], ';', cells)) continue;
        for (size_t c = 0; c < cells.size(); ++c) {
            const std::string h = UCase(cells[c]);
            if (h == "GEMEINDEKENNZIFFER")
                cKnz = c;
            else if (h == "GEMEINDENAME")
                cName = c;
            else if (h == "GEMEINDECODE")
                cCode = c;
            else if (h == UCase("PLZ des Gem.Amtes"))
                cPlz = c;
            else if (h == UCase("weitere Postleitzahlen"))
                cMore = c;
        }
        if (cKnz != kNone) headerLine = i;
    }
    if (headerLine == kNone) {
        faults.AddFile("no header line with Gemeindekennziffer: not a municipality list of Statistik Austria");
        faults.ThrowIfAny();
    }
    if (cName == kNone) faults.Add(static_cast<int32_t>(headerLine + 1), "no column Gemeindename");
    if (cPlz == kNone) faults.Add(static_cast<int32_t>(headerLine + 1), "no column PLZ des Gem.Amtes");
    faults.ThrowIfAny();
    const size_t needed = std::max({cKnz, cName, cPlz}) + 1;

    struct AtTown {
        int32_t line;
        std::string code, name, plz;
    };
    std::vector<AtTown> towns;
    std::unordered_map<std::string, int32_t> codeLine;
    int32_t further = 0;
    for (size_t i = headerLine + 1; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        if (!SplitCsv(text.lines[i], ';', cells)) {
            faults.Add(lineNo, "a quote is left open");
            continue;
        }
        if (BlankCells(cells)) continue;
        const bool note = !cells[0].empty() && (cells[0][0] < '0' || cells[0][0] > '9') &&
                          std::all_of(cells.begin() + 1, cells.end(), [](const std::string& c) { return c.empty(); });
        if (note) continue;  // the publisher's source line under the table
        if (cells.size() < needed) {
            faults.Add(lineNo, std::to_string(cells.size()) + " cells, the header needs " + std::to_string(needed));
            continue;
        }
        const std::string knz = cells[cKnz];
        if (knz.size() != 5 || !AllDigits(knz) || knz[0] == '0') {
            faults.Add(lineNo, "Gemeindekennziffer '" + knz + "' is not five digits from 10000");
            continue;
        }
        std::string code = cCode != kNone && cCode < cells.size() ? cells[cCode] : std::string();
        if (code.empty()) code = knz;
        if (code.size() != 5 || !AllDigits(code) || code[0] != knz[0]) {
            faults.Add(lineNo, "Gemeindecode '" + code + "' is not five digits in the state of " + knz);
            continue;
        }
        if (cells[cName].empty()) {
            faults.Add(lineNo, "no Gemeindename");
            continue;
        }
        const std::string plz = cells[cPlz];
        if (plz.size() != 4 || !AllDigits(plz)) {
            faults.Add(lineNo, "postcode '" + plz + "' is not four digits");
            continue;
        }
        if (cMore != kNone && cMore < cells.size()) {
            std::string bad;
            std::string more = cells[cMore];
            std::replace(more.begin(), more.end(), ',', ' ');
            size_t p = 0;
            while (p < more.size()) {
                const size_t q = std::min(more.find(' ', p), more.size());
                const std::string w = more.substr(p, q - p);
                if (!w.empty() && (w.size() != 4 || !AllDigits(w))) bad = w;
                if (!w.empty()) ++further;
                p = q + 1;
            }
            if (!bad.empty()) {
                faults.Add(lineNo, "further postcode '" + bad + "' is not four digits");
                continue;
            }
        }
        const auto [it, fresh] = codeLine.emplace(code, lineNo);
        if (!fresh) {
            faults.Add(lineNo, "Gemeindecode " + code + " already on line " + std::to_string(it->second));
            continue;
        }
        towns.push_back({lineNo, code, cells[cName], plz});
    }
    if (towns.empty()) faults.AddFile("no municipalities under the header");
    faults.ThrowIfAny();
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    std::vector<WantedRow> rows;
    for (const AtTown& t : towns) {
        const AustrianState& s = kAustrianStates[t.code[0] - '0'];
        Cells c, fresh;
        c("Land_ID", kAustria)("Land", kAustriaName)("Land_ShortName", kAustriaShort)("AGS", t.code)(
            "BL_ID", t.code.substr(0, 1))("BL_Name", s.name)("BL_ShortName", s.shortName)(
            "Reg_ID", t.code.substr(1, 2))("LK_ID", "00")("Gem_ID", t.code.substr(3, 2))("Gemeinde", t.name)("PLZ",
                                                                                                             t.plz);
        fresh.items = FreshZones(true);
        fresh("Reg_Name", "")("LK_Name", "");
        rows.push_back({t.code, std::move(c.items), std::move(fresh.items)});
    }
    TownImportReport report;
    report.source = name + ": " + std::to_string(towns.size()) + " municipalities";
    Batch batch;
    Database& db = batch.Open(qvrlDb);
    report.tables.push_back(Merge(db, {FileName(qvrlDb), "slzwlz1 (Land_ID 51)"},
                                  "SELECT * FROM slzwlz1 WHERE Land_ID = 51", "AGS", KeyKind::Text, "slzwlz1", rows));
    batch.Commit();
    if (further)
        report.notes.push_back(std::to_string(further) +
                               " further postcodes checked, not stored: a town row holds the one of its office");
    return report;
}

}  // namespace qvrl
