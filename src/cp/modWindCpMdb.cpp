#include "cp/modWindCpMdb.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "cp/modWindCp.h"
#include "interchange/TextFile.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "rules/modMath.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace qvrl {

namespace {

using R = CpWindRecord;
using Col = double R::*;

// Internal pressure rows belong to one HzuD group only when this close to 0.
constexpr double kCpeInnenGroupTolerance = 0.0001;

constexpr int32_t kInputPastEndOfFile = 62;

// The zones the roof and flat roof interpolation carries; A to E are walls.
constexpr std::size_t kRoofZones[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 14};  // F..N, Ft
constexpr std::size_t kWallZones[] = {9, 10, 11, 12, 13};               // A..E

void CheckRequest(double v) {
    if (std::isnan(v)) Raise(err::Overflow, "modWindCpMdb");
}

// Shortest text that reads back as the same double, as the query wants it.
std::string NumberText(double v) {
    char buf[32];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, v);
    if (ec != std::errc()) Raise(err::Overflow, "modWindCpMdb");
    return std::string(buf, p);
}

CpWindRows NoRows() { return CpWindRows(1); }

// --- the database route ---------------------------------------------------

// The columns of cpe that a row carries, by name, and where they go.
struct ColumnMap {
    std::string name;
    Col field;
};

std::vector<ColumnMap> BuildColumnMap() {
    std::vector<ColumnMap> m = {{"Theta", &R::Theta}, {"Alpha", &R::Alpha}, {"HzuD", &R::HzuD},
                                {"HPzuH", &R::HPzuH}, {"RzuH", &R::RzuH},   {"Mue", &R::Mue},
                                {"Innen", &R::Innen}, {"Innena", &R::Innena}};
    // Zone columns carry the field names: A10, A10a, A1, A1a, ...
    for (const CpZoneSlots& z : kCpZones) {
        const std::string n = z.name;
        m.push_back({n + "10", z.s10});
        m.push_back({n + "10a", z.s10a});
        m.push_back({n + "1", z.s1});
        m.push_back({n + "1a", z.s1a});
    }
    return m;
}

const std::vector<ColumnMap>& Columns() {
    static const std::vector<ColumnMap> m = BuildColumnMap();
    return m;
}

std::string AsciiLower(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return r;
}

// Positions in Columns() by case-blind name; Norm and TrTyp follow at the end.
const std::unordered_map<std::string, std::size_t>& ColumnIndex() {
    static const std::unordered_map<std::string, std::size_t> m = [] {
        std::unordered_map<std::string, std::size_t> r;
        for (std::size_t i = 0; i < Columns().size(); ++i) r.emplace(AsciiLower(Columns()[i].name), i);
        r.emplace("norm", Columns().size());
        r.emplace("trtyp", Columns().size() + 1);
        return r;
    }();
    return m;
}

// Reads a query into rows by the column mapping of cpe. A missing table or
// column raises what the engine raises.
void ReadRows(const std::string& sql, CpWindRows& Rows) {
    const std::shared_ptr<Database>& db = State().CpeDb;
    // The text file can come into force between a request and its query, and
    // then no connection was ever opened.
    if (!db) Raise(err::ObjectNotSet, "modWindCpMdb");
    auto rs = db->OpenRecordset(sql, dao::dbOpenSnapshot);
    // One pass over the result's columns instead of a search per column name.
    const std::size_t nCols = Columns().size();
    std::vector<Field*> byColumn(nCols + 2, nullptr);
    Fields& fields = rs->Fields();
    for (Field& f : fields) {
        const auto it = ColumnIndex().find(AsciiLower(f.Name()));
        if (it != ColumnIndex().end() && !byColumn[it->second]) byColumn[it->second] = &f;
    }
    for (std::size_t i = 0; i < byColumn.size(); ++i) {
        if (byColumn[i]) continue;
        // The engine raises its own error for a column that is missing.
        byColumn[i] = &fields.Item(i < nCols ? Columns()[i].name : std::string(i == nCols ? "Norm" : "TrTyp"));
    }
    CpWindRows rows = NoRows();
    while (!rs->EOF_()) {
        CpWindRecord& r = rows.emplace_back();
        for (std::size_t i = 0; i < nCols; ++i) r.*Columns()[i].field = NzNumber(*byColumn[i]);
        r.Norm = CLng(NzNumber(*byColumn[nCols]));
        r.TrTyp = CInt(NzNumber(*byColumn[nCols + 1]));
        rs->MoveNext();
    }
    rs->Close();
    (void)CpRowCount(rows);
    Rows = std::move(rows);
}

// The database route: no connection yet and none to be had gives no rows.
bool ReadyForQuery() {
    if (State().CpeDb) return true;
    return InitCpeMdb();
}

// --- the text file route --------------------------------------------------

// The next item of a line, or nothing when no ";" is left; then the line stays.
bool NextItem(std::string_view& line, std::string_view& item) {
    while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
    const std::size_t p = line.find(';');
    if (p == std::string_view::npos) return false;
    item = line.substr(0, p);
    // A quote only strips the ends of the item; a ";" inside it has already
    // ended the field.
    if (!line.empty() && (line[0] == '\'' || line[0] == '"'))
        item = item.size() >= 2 ? item.substr(1, item.size() - 2) : std::string_view();
    line.remove_prefix(p + 1);
    while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
    return true;
}

// The plain decimals a coefficient file is made of ("-0.6", "15") read
// straight; anything else (blanks, exponents, "&H", a stray character) takes
// the full conversion, which also raises 13 for what is no number. Both give
// the same double: the digits are rounded once, and a sign is symmetric.
bool PlainDecimal(std::string_view s) {
    std::size_t i = s.empty() || s[0] != '-' ? 0 : 1;
    const std::size_t first = i;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') ++i;
    if (i == first) return false;
    if (i < s.size() && s[i] == '.') {
        const std::size_t dot = ++i;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') ++i;
        if (i == dot) return false;
    }
    return i == s.size() && s.size() <= 24;
}

double NumberItem(std::string_view& line) {
    std::string_view item;
    if (!NextItem(line, item) || item.empty()) return 0.0;
    if (PlainDecimal(item)) {
        double v = 0.0;
        const auto [p, ec] = std::from_chars(item.data(), item.data() + item.size(), v);
        if (ec == std::errc() && p == item.data() + item.size()) return v;
    }
    return Variant(std::string(item)).toDouble();
}

// All rows of the text file. Size and time stamp are taken before the read:
// a file that changes while it is read then differs at the next request.
std::shared_ptr<const CpeTextRows> AllTextRows() {
    namespace fs = std::filesystem;
    const std::string file = CpeTextFileName();
    ModuleState& st = State();
    std::error_code ec;
    const std::uintmax_t size = fs::file_size(file, ec);
    const fs::file_time_type time = ec ? fs::file_time_type{} : fs::last_write_time(file, ec);
    const std::shared_ptr<const CpeTextRows>& kept = st.CpeText;
    if (!ec && kept && kept->file == file && kept->size == size && kept->time == time) return kept;
    st.CpeText.reset();
    auto fresh = std::make_shared<CpeTextRows>();
    ReadCpeText(file, fresh->rows);
    fresh->file = file;
    fresh->size = size;
    fresh->time = time;
    // A file whose stamp could not be read is never taken for an unchanged one.
    if (!ec) st.CpeText = fresh;
    return fresh;
}

// Rows of one Norm and Typ from the text file, in file order.
CpWindRows TextRows(int16_t Norm, int16_t Typ) {
    const std::shared_ptr<const CpeTextRows> all = AllTextRows();
    CpWindRows rows = NoRows();
    for (std::size_t i = 1; i < all->rows.size(); ++i)
        if (all->rows[i].Norm == Norm && all->rows[i].Typ == Typ) rows.push_back(all->rows[i]);
    return rows;
}

void KeepTheta(CpWindRows& rows, double Theta) {
    CpWindRows kept = NoRows();
    for (std::size_t i = 1; i < rows.size(); ++i)
        if (rows[i].Theta == Theta) kept.push_back(std::move(rows[i]));
    rows = std::move(kept);
}

void AlphaToAlphaTr(CpWindRows& rows) {
    for (std::size_t i = 1; i < rows.size(); ++i) rows[i].AlphaTr = rows[i].Alpha;
}

// --- the scans ------------------------------------------------------------

// The store route's key scan, steps 1 to 4 and, for the flat roof, step 5.
template <class Interp>
void ScanKey(const CpWindRows& mCpWind, Col key, double v, bool Flat, Interp interp, CpWindRecord& Rec) {
    Rec = CpWindRecord{};
    const int16_t n = CpRowCount(mCpWind);
    for (int16_t i = 1; i <= n; ++i) {
        const CpWindRecord& row = mCpWind[static_cast<std::size_t>(i)];
        const double d = row.*key - v;
        if (std::fabs(d) < kCpKeyTolerance) {
            Rec = row;
            return;
        }
        if (d > kCpKeyTolerance && i == 1) {
            Rec = row;
            return;
        }
        if (i == n && d < kCpKeyTolerance) {
            Rec = row;
            return;
        }
        if (i > 1) {
            const CpWindRecord& below = mCpWind[static_cast<std::size_t>(i - 1)];
            const double lo = v - below.*key;
            if (lo > kCpKeyTolerance && d > kCpKeyTolerance) {
                Rec = interp(below, row);
                return;
            }
            if (Flat && i == n) {
                Rec = row;
                return;
            }
        }
    }
}

CpWindRecord InterpZones(Col key, double v, double Theta, const CpWindRecord& R1, const CpWindRecord& R2) {
    CpWindRecord r;
    r.*key = v;
    r.Theta = Theta;
    for (std::size_t z : kRoofZones) {
        const CpZoneSlots& s = kCpZones[z];
        for (Col c : {s.s10, s.s1, s.s10a, s.s1a}) r.*c = InterpolateGuarded(R1.*key, R1.*c, R2.*key, R2.*c, v);
    }
    return r;
}

// R1 is the row of the smaller HzuD.
CpWindRecord InterpWall(double x, const CpWindRecord& R1, const CpWindRecord& R2) {
    CpWindRecord r;
    r.HzuD = x;
    for (std::size_t z : kWallZones) {
        const CpZoneSlots& s = kCpZones[z];
        for (Col c : {s.s10, s.s1, s.s10a, s.s1a}) r.*c = InterpolateGuarded(R1.HzuD, R1.*c, R2.HzuD, R2.*c, x);
    }
    return r;
}

void SelectByAlpha(const CpWindRows& rows, double Theta, double Alpha, CpWindRecord& Rec) {
    ScanKey(
        rows, &R::Alpha, Alpha, false,
        [&](const CpWindRecord& a, const CpWindRecord& b) { return InterpZones(&R::Alpha, Alpha, Theta, a, b); },
        Rec);
}

}  // namespace

// --- store ----------------------------------------------------------------

std::string CpeTextFileName() { return ProgramFolder() + "/qvrlcpe.txt"; }

bool InitCpeMdb() {
    try {
        WriteTrace({}, std::nullopt, "InitCpeMdb_Start", true);
        ModuleState& st = State();
        if (FileExists(CpeTextFileName())) {
            st.UseCpeTxt = true;
            return true;
        }
        st.UseCpeTxt = false;
        if (!st.CpeDb) st.CpeDb = OpenDB(ShippedDataFile("qvrl.mdb"), Variant(), Variant(true));
        WriteTrace({}, std::nullopt, "InitCpeMdb_End", true);
        return true;
    } catch (const RuntimeError& e) {
        try {
            WriteTrace("Error", Variant(std::to_string(e.number()) + " " + e.description()), "InitCpeMdb_End", true);
        } catch (const RuntimeError&) {
            // A log that cannot be written must not turn a quiet failure loud.
        }
        return false;
    }
}

// --- queries --------------------------------------------------------------

std::string CpeQuerySatteldach(int16_t Norm, double Theta) {
    return "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypSatteldach) +
           " AND Norm = " + std::to_string(Norm) + " AND Theta = " + NumberText(Theta) + " ORDER BY Alpha";
}

std::string CpeQueryWalmdach(int16_t Norm) {
    return "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypWalmdach) + " AND Norm = " + std::to_string(Norm) +
           " ORDER BY Alpha";
}

std::string CpeQueryPultdach(int16_t Norm, double Theta) {
    return "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypPultdach) + " AND Norm = " + std::to_string(Norm) +
           " AND Theta = " + NumberText(Theta) + " ORDER BY Alpha";
}

std::string CpeQueryFlachdach(int16_t Norm, int16_t TrTyp) {
    const char* order = "ID";
    switch (TrTyp) {
        case 2: order = "HPzuH"; break;
        case 3: order = "RzuH"; break;
        case 4: order = "Alpha"; break;
        default: break;
    }
    return "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypFlachdach) +
           " AND Norm = " + std::to_string(Norm) + " AND TrTyp = " + std::to_string(TrTyp) + " ORDER BY " + order;
}

std::string CpeQueryWand(int16_t Norm) {
    return "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypWand) + " AND Norm = " + std::to_string(Norm) +
           " ORDER BY HzuD DESC";
}

std::string CpeQueryInnen(int16_t Norm, int16_t TrTyp, double Theta) {
    std::string sql = "SELECT * FROM cpe WHERE Typ = " + std::to_string(cpe::TypInnen) +
                      " AND TrTyp = " + std::to_string(TrTyp) + " AND Norm = " + std::to_string(Norm);
    if (TrTyp != 0) sql += " AND Theta = " + NumberText(Theta);
    return sql + " ORDER BY ID";
}

// --- loaders --------------------------------------------------------------

void Get_Wind_Cp_Satteldach_FromMdb(int16_t Norm, double Theta, CpWindRows& Rows) {
    Rows = NoRows();
    if (State().UseCpeTxt) {
        CpWindRows rows = TextRows(Norm, cpe::TypSatteldach);
        KeepTheta(rows, Theta);
        Rows = std::move(rows);
        return;
    }
    if (!ReadyForQuery()) return;
    const std::string sql = CpeQuerySatteldach(Norm, Theta);
    WriteTrace("SQL=", Variant(sql), "Get_Wind_Cp_Satteldach_FromMdb", true);
    ReadRows(sql, Rows);
}

void Get_Wind_Cp_Walmdach_FromMdb(int16_t Norm, CpWindRows& Rows) {
    Rows = NoRows();
    if (State().UseCpeTxt) {
        Rows = TextRows(Norm, cpe::TypWalmdach);
        return;
    }
    if (!ReadyForQuery()) return;
    ReadRows(CpeQueryWalmdach(Norm), Rows);
}

void Get_Wind_Cp_Pultdach_FromMdb(int16_t Norm, double Theta, CpWindRows& Rows) {
    Rows = NoRows();
    if (State().UseCpeTxt) {
        CpWindRows rows = TextRows(Norm, cpe::TypPultdach);
        KeepTheta(rows, Theta);
        Rows = std::move(rows);
        return;
    }
    if (!ReadyForQuery()) return;
    ReadRows(CpeQueryPultdach(Norm, Theta), Rows);
}

void Get_Wind_Cp_Flachdach_FromMdb(int16_t Norm, int16_t TrTyp, CpWindRows& Rows) {
    Rows = NoRows();
    CpWindRows rows;
    if (State().UseCpeTxt) {
        CpWindRows all = TextRows(Norm, cpe::TypFlachdach);
        rows = NoRows();
        for (std::size_t i = 1; i < all.size(); ++i)
            if (all[i].TrTyp == TrTyp) rows.push_back(std::move(all[i]));
    } else {
        if (!ReadyForQuery()) return;
        ReadRows(CpeQueryFlachdach(Norm, TrTyp), rows);
    }
    // Mansard rows keep their eaves angle in Alpha; the scan reads AlphaTr.
    if (TrTyp == 4) AlphaToAlphaTr(rows);
    Rows = std::move(rows);
}

void Get_Wind_Cp_Wand_FromMdb(int16_t Norm, CpWindRows& Rows) {
    Rows = NoRows();
    if (State().UseCpeTxt) {
        Rows = TextRows(Norm, cpe::TypWand);
        return;
    }
    if (!ReadyForQuery()) return;
    ReadRows(CpeQueryWand(Norm), Rows);
}

void Get_Wind_Cp_Innen_FromMdb(int16_t Norm, int16_t TrTyp, double Theta, CpWindRows& Rows) {
    Rows = NoRows();
    // The text file has no internal pressure columns, so this loader asks the
    // database even while the text file is in force.
    if (!State().UseCpeTxt && !ReadyForQuery()) return;
    ReadRows(CpeQueryInnen(Norm, TrTyp, Theta), Rows);
}

// --- Theta ----------------------------------------------------------------

double CpeThetaSatteldach(double Theta) {
    CheckRequest(Theta);
    if (Theta < 0.0) return 90.0;
    if (Theta <= 45.0) return 0.0;
    if (Theta < 135.0) return 90.0;
    if (Theta <= 225.0) return 0.0;
    if (Theta <= 315.0) return 90.0;
    return 0.0;
}

std::optional<double> CpeThetaPultdach(double Theta) {
    CheckRequest(Theta);
    if (Theta < 0.0) return std::nullopt;
    if (Theta <= 45.0) return 0.0;
    if (Theta <= 135.0) return 90.0;
    if (Theta <= 180.0) return 180.0;
    return std::nullopt;
}

double CpeThetaInnen(double Theta) {
    CheckRequest(Theta);
    if (Theta < 0.0) return 90.0;
    if (Theta <= 45.0) return 0.0;
    if (Theta < 135.0) return 90.0;
    if (Theta <= 225.0) return 180.0;
    if (Theta <= 315.0) return 90.0;
    return 0.0;
}

// --- scans ----------------------------------------------------------------

void CpeScanKey(const CpWindRows& mCpWind, double CpWindRecord::*key, double v, double Theta, bool Flat,
                CpWindRecord& Rec) {
    if (!key) Raise(err::InvalidCall, "CpeScanKey");
    ScanKey(
        mCpWind, key, v, Flat,
        [&](const CpWindRecord& a, const CpWindRecord& b) { return InterpZones(key, v, Theta, a, b); }, Rec);
}

void CpeScanHzuD(const CpWindRows& mCpWind, double v, CpWindRecord& Rec) {
    CpScanHzuDWith(mCpWind, v, Rec,
                   [v](const CpWindRecord& smaller, const CpWindRecord& row) { return InterpWall(v, smaller, row); });
}

// --- routes ---------------------------------------------------------------

void Get_Wind_Cp_Satteldach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Alpha);
    WriteTrace({}, std::nullopt, "Get_Wind_Cp_Satteldach_Mdb_Start ", true);
    CpWindRows rows;
    Get_Wind_Cp_Satteldach_FromMdb(Norm, CpeThetaSatteldach(Theta), rows);
    WriteTrace("cnt(mCpWind)=", Variant(CpRowCount(rows)), "Get_Wind_Cp_Satteldach_FromMdb", true);
    SelectByAlpha(rows, Theta, Alpha, Rec);
    WriteTrace({}, std::nullopt, "Get_Wind_Cp_Satteldach_Mdb_End ", true);
}

void Get_Wind_Cp_Walmdach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Theta);
    CheckRequest(Alpha);
    // No direction reaches the store, so Theta 0 finds rows here, unlike the
    // built-in route.
    CpWindRows rows;
    Get_Wind_Cp_Walmdach_FromMdb(Norm, rows);
    SelectByAlpha(rows, Theta, Alpha, Rec);
}

void Get_Wind_Cp_Pultdach_Mdb(int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Alpha);
    const std::optional<double> rowTheta = CpeThetaPultdach(Theta);
    if (!rowTheta) {
        Rec = CpWindRecord{};
        return;
    }
    CpWindRows rows;
    Get_Wind_Cp_Pultdach_FromMdb(Norm, *rowTheta, rows);
    SelectByAlpha(rows, Theta, Alpha, Rec);
}

void Get_Wind_Cp_Flachdach_Mdb(int16_t Norm, double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec) {
    CheckRequest(hpZuH);
    CheckRequest(rZuH);
    CheckRequest(AlphaTr);
    double v = 0.0;
    const int16_t trTyp = CpFlachdachTrTyp(hpZuH, rZuH, AlphaTr, v);
    CpWindRows rows;
    Get_Wind_Cp_Flachdach_FromMdb(Norm, trTyp, rows);
    Col key = nullptr;
    switch (trTyp) {
        case 2: key = &R::HPzuH; break;
        case 3: key = &R::RzuH; break;
        case 4: key = &R::AlphaTr; break;
        default: {
            // Sharp eaves have no key: the last row stands.
            Rec = rows.back();
            return;
        }
    }
    CpeScanKey(rows, key, v, 0.0, true, Rec);
}

void Get_Wind_Cp_Wand_Mdb(int16_t Norm, double HzuD, CpWindRecord& Rec) {
    CheckRequest(HzuD);
    CpWindRows rows;
    Get_Wind_Cp_Wand_FromMdb(Norm, rows);
    CpeScanHzuD(rows, HzuD, Rec);
}

void Get_Wind_Cp_Innen_Mdb(int16_t Norm, int16_t TrTyp, double Theta, double Mue, CpWindRecord& Rec) {
    CheckRequest(Mue);
    Rec = CpWindRecord{};
    CpWindRows rows;
    Get_Wind_Cp_Innen_FromMdb(Norm, TrTyp, CpeThetaInnen(Theta), rows);
    if (CpRowCount(rows) == 0) return;

    // The HzuD groups were meant to be gathered as tagged values, but a list
    // whose element 0 is empty takes no double; what is left is one group
    // whose HzuD counts as 0, whatever the request's HzuD.
    std::vector<Variant> groups(1);
    int16_t count = 0;
    for (std::size_t i = 1; i < rows.size(); ++i) AddUniqueValue(Variant(rows[i].HzuD), groups, count);
    if (count == 0) {
        groups.emplace_back();
        count = 1;
    }
    CpWindRows results = NoRows();
    for (int16_t g = 1; g <= count; ++g) {
        const double groupHzuD = NzNumber(groups[static_cast<std::size_t>(g)]);
        CpWindRows group = NoRows();
        for (std::size_t i = 1; i < rows.size(); ++i)
            if (std::fabs(rows[i].HzuD - groupHzuD) < kCpeInnenGroupTolerance) group.push_back(rows[i]);
        CpWindRecord r;
        ScanKey(
            group, &R::Mue, Mue, false,
            [&](const CpWindRecord& a, const CpWindRecord& b) {
                CpWindRecord m;
                m.Mue = Mue;
                m.Innen = InterpolateGuarded(a.Mue, a.Innen, b.Mue, b.Innen, Mue);
                m.Innena = InterpolateGuarded(a.Mue, a.Innena, b.Mue, b.Innena, Mue);
                return m;
            },
            r);
        results.push_back(std::move(r));
    }
    // The groups are scanned by their HzuD against a fixed 0.
    ScanKey(
        results, &R::HzuD, 0.0, false,
        [](const CpWindRecord& a, const CpWindRecord& b) {
            CpWindRecord m;
            m.HzuD = 0.0;
            m.Innen = InterpolateGuarded(a.HzuD, a.Innen, b.HzuD, b.Innen, 0.0);
            m.Innena = InterpolateGuarded(a.HzuD, a.Innena, b.HzuD, b.Innena, 0.0);
            return m;
        },
        Rec);
}

// --- text file ------------------------------------------------------------

void ParseCpeTextLine(std::string Line, CpWindRecord& Rec) {
    Rec = CpWindRecord{};
    std::string_view line = Line;
    Rec.ID = CLng(NumberItem(line));
    Rec.Norm = CLng(NumberItem(line));
    Rec.Typ = CInt(NumberItem(line));
    Rec.TrTyp = CInt(NumberItem(line));
    {
        std::string_view item;
        if (NextItem(line, item)) Rec.Remark = std::string(item);
    }
    for (Col c : {&R::Theta, &R::Alpha, &R::HzuD, &R::HPzuH, &R::RzuH}) Rec.*c = NumberItem(line);
    // In the file Ft follows F, unlike the order of the record.
    static constexpr std::size_t kFileZones[] = {9, 10, 11, 12, 13, 0, 14, 1, 2, 3, 4, 5, 6, 7, 8};
    for (std::size_t z : kFileZones) {
        const CpZoneSlots& s = kCpZones[z];
        for (Col c : {s.s10, s.s10a, s.s1, s.s1a}) Rec.*c = NumberItem(line);
    }
}

void ReadCpeText(const std::string& FileName, CpWindRows& Rows) {
    Rows = NoRows();
    if (!FileExists(FileName)) Raise(err::FileNotFound, "ReadCpeText");
    const TextLines text = ReadTextLines(FileName);
    if (text.lines.empty()) Raise(kInputPastEndOfFile, "ReadCpeText", "Input past end of file");
    CpWindRows rows = NoRows();
    rows.reserve(text.lines.size() + 1);
    for (const std::string& line : text.lines) {
        ParseCpeTextLine(line, rows.emplace_back());
        (void)CpRowCount(rows);
    }
    Rows = std::move(rows);
}

}  // namespace qvrl
