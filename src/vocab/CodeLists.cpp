#include "vocab/CodeLists.h"

#include "support/CLocLite.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

const std::vector<NormRow>& NormTable() {
    static const std::vector<NormRow> rows = {
        {1, "DIN 1055-4:1986, DIN 1055-5:1975"},
        {3, "DIN 1055-4:2005, DIN 1055-5:2005"},
        {54, "EN 1991-1-3:2003, EN 1991-1-4:2005"},
        {50, "DIN EN 1991-1-3:2004, DIN EN 1991-1-4:2005"},
        {51, "ÖNorm B 1991-1-3:2006, ÖNorm B 1991-1-4:2009"},
        {53, "NA to BS EN 1991-1-3:2003, NA to BS EN 1991-1-4:2005"},
        {52, "I EN 1991-1-3:2003, I EN 1991-1-4:2005"},
    };
    return rows;
}

std::string LiveLoadNormText(int16_t code) {
    if (code == 1) return "DIN 1055-3:1971";
    if (code == 3) return "DIN 1055-3:2006-03";
    return {};
}

const std::vector<OtherNormCode>& OtherNormCodes() {
    static const std::vector<OtherNormCode> rows = {
        {31, "DIN 1055-4:2005 with five wind zones and the municipal tables"},
        {78, "live load catalogue data, additional load not summed"},
        {211, "live load catalogue data, additional load not summed"},
        {213, "live load catalogue data, zone tables as Norm 3"},
    };
    return rows;
}

const std::vector<int16_t>& AnnexCodes() {
    static const std::vector<int16_t> codes = {norm::DE, norm::AT, norm::IT, norm::UK, norm::EN};
    return codes;
}

CodeList LiveLoadNormList() {
    CodeList l;
    l.Add(LiveLoadNormText(1), 1);
    l.Add(LiveLoadNormText(3), 3);
    return l;
}

bool IsCatalogueNorm(int16_t code) {
    switch (code) {
    case 1: case 3: case 213: case 211: case 78: case 54: case 51: case 50: case 53: case 52: return true;
    default: return false;
    }
}

bool IsEurocodeNorm(int16_t code) { return code >= 50 && code <= 54; }

std::vector<int16_t> ParseSelectableCodes(const std::string& codes) {
    std::vector<int16_t> r;
    size_t open = codes.find('_');
    while (open != std::string::npos) {
        const size_t close = codes.find('_', open + 1);
        if (close == std::string::npos) break;       // no later underscore
        if (close == open + 1) break;                // empty token
        r.push_back(CInt(Variant(codes.substr(open + 1, close - open - 1))));
        open = close;
    }
    return r;
}

bool IsSelectableNorm(const std::string& codes, int16_t norm) {
    for (int16_t c : ParseSelectableCodes(codes))
        if (c == norm) return true;
    return false;
}

std::vector<NormRow> SelectableNormRows(const std::string& codes) {
    const std::vector<int16_t> set = ParseSelectableCodes(codes);
    std::vector<NormRow> r;
    for (const NormRow& row : NormTable())
        for (int16_t c : set)
            if (c == row.code) {
                r.push_back(row);
                break;
            }
    return r;
}

namespace {
CodeList Plain(std::initializer_list<std::pair<const char*, int16_t>> rows) {
    CodeList l;
    for (const auto& [text, code] : rows) l.Add(text, code);
    return l;
}
CodeList Texts(std::initializer_list<std::pair<int32_t, int16_t>> rows) {
    CodeList l;
    for (const auto& [number, code] : rows) l.Add(LoadResStr(Variant(number)), code);
    return l;
}
}  // namespace

CodeList WindZoneList2005() { return Plain({{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}}); }
CodeList WindZoneList2005_T2963() { return Plain({{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}, {"5", 5}}); }
CodeList WindCategoryList2005() { return Texts({{24, 1}, {25, 5}, {26, 2}, {27, 6}, {28, 3}, {29, 4}}); }

CodeList WindCategoryList_EN(int16_t CtrlNA) {
    if (CtrlNA == norm::UK)
        return Plain({{"Sea (0)", 0}, {"Country (I)", 1}, {"Country (II)", 2}, {"Town (III)", 3}, {"Town (IV)", 4}});
    if (CtrlNA == norm::AT) return Texts({{535, 2}, {536, 3}, {537, 4}});
    return Texts({{533, 0}, {534, 1}, {535, 2}, {536, 3}, {537, 4}});
}

CodeList SnowZoneList1975() { return Plain({{"I", 1}, {"II", 2}, {"III", 3}, {"IV", 4}}); }
CodeList SnowZoneList2005() { return Plain({{"1", 1}, {"1a", 11}, {"2", 2}, {"2a", 21}, {"3", 3}}); }
CodeList WindOpenSidesList2005() { return Texts({{511, 0}, {512, 1}, {513, 2}, {514, 22}, {515, 3}}); }
CodeList WindOpenSidesList_EN() { return Texts({{511, 0}, {516, 1}}); }

namespace {
struct RegionRow {
    int16_t region;
    int32_t text;
    const char* map;
};
// In the order of the text numbers: 11 stands before 10.
constexpr RegionRow kRegions[] = {
    {1, 520, "frmEN_SZ_alpine"},        {2, 521, "frmEN_SZ_centraleast"},
    {3, 522, "frmEN_SZ_greece"},        {4, 523, "frmEN_SZ_iberian"},
    {5, 524, "frmEN_SZ_mediterranean"}, {6, 525, "frmEN_SZ_centralwest"},
    {7, 526, "frmEN_SZ_swedenfinland"}, {8, 527, "frmEN_SZ_uk"},
    {9, 528, "frmEN_SZ_norway"},        {11, 529, "frmEN_SZ_czech"},
    {10, 530, "frmEN_SZ_iceland"},      {12, 531, "frmEN_SZ_poland"},
};

struct ZoneRow {
    const char* text;
    int16_t code;
    double z;
    std::vector<int16_t> regions;  // besides region 0
};
const std::vector<ZoneRow>& EuropeanZones() {
    static const std::vector<ZoneRow> rows = {
        {"1", 1, 1.0, {1, 2, 3, 4, 5, 6, 7, 8}},
        {"2", 2, 2.0, {1, 2, 3, 4, 5, 6, 7, 8}},
        {"3", 3, 3.0, {1, 2, 5, 6, 7, 8}},
        {"4", 4, 4.0, {3, 4}},
        {"4,5", 5, 4.5, {1, 2, 5, 6, 7, 8}},
        {"NOR 1,75", 11, 1.75, {9}},
        {"NOR 3,25", 12, 3.25, {9}},
        {"NOR 4,75", 13, 4.75, {9}},
        {"NOR 6,25", 14, 6.25, {9}},
        {"NOR 9,5", 15, 9.5, {9}},
        {"CZ I", 21, 0.75, {11}},
        {"CZ II", 22, 1.05, {11}},
        {"CZ III", 23, 1.5, {11}},
        {"CZ IV", 24, 2.25, {11}},
        // open-ended zones sit just above the figure before them
        {"CZ V", 25, 2.26, {11}},
        {"IS 1", 31, 2.1, {10}},
        {"IS 2", 32, 3.8, {10}},
        {"IS 3", 33, 6.1, {10}},
        {"IS 4", 34, 6.11, {10}},
        {"IS H", 35, 99.0, {10}},
        {"PL 1", 41, 0.7, {12}},
        {"PL 2", 42, 0.9, {12}},
        {"PL 3", 43, 1.2, {12}},
        {"PL 4", 44, 1.6, {12}},
        {"PL 5", 45, 2.0, {12}},
    };
    return rows;
}
}  // namespace

CodeList SnowRegionList(int16_t CtrlNA) {
    CodeList l;
    if (CtrlNA == norm::AT || CtrlNA == norm::UK) return l;
    for (const RegionRow& r : kRegions) l.Add(LoadResStr(Variant(r.text)), r.region);
    return l;
}

namespace {
struct AnnexZone {
    const char* text;
    int16_t code;
    double z;
};
// The fourth Austrian row's figure differs from its text on purpose.
constexpr AnnexZone kAustria[] = {{"2*", 101, 1.6}, {"2", 102, 2.0}, {"3", 103, 3.0}, {"4", 104, 4.5}};
constexpr AnnexZone kUnitedKingdom[] = {{"1", 101, 1.0}, {"2", 102, 2.0}, {"3", 103, 3.0},
                                        {"4", 104, 4.0}, {"5", 105, 5.0}, {"6,5", 106, 6.5}};

bool Listed(const ZoneRow& row, int16_t CtrlRegion) {
    if (CtrlRegion == 0) return true;
    for (int16_t r : row.regions)
        if (r == CtrlRegion) return true;
    return false;
}

// Calls f(text, code, z) for each row of the list, in order, until f returns true.
template <class F>
void ForEachZone(int16_t CtrlNA, int16_t CtrlRegion, F f) {
    if (CtrlNA == norm::AT) {
        for (const auto& r : kAustria)
            if (f(r.text, r.code, r.z)) return;
        return;
    }
    if (CtrlNA == norm::UK) {
        for (const auto& r : kUnitedKingdom)
            if (f(r.text, r.code, r.z)) return;
        return;
    }
    for (const ZoneRow& row : EuropeanZones())
        if (Listed(row, CtrlRegion) && f(row.text, row.code, row.z)) return;
}
}  // namespace

ZoneList SnowZoneList(int16_t CtrlNA, int16_t CtrlRegion) {
    ZoneList l;
    ForEachZone(CtrlNA, CtrlRegion, [&](const char* text, int16_t code, double z) {
        l.Add(text, code, z);
        return false;
    });
    return l;
}

double SnowZoneFigure(int16_t CtrlNA, int16_t CtrlRegion, int16_t code) {
    // The first row with the code decides; the list itself need not be built.
    double found = 0.0;
    ForEachZone(CtrlNA, CtrlRegion, [&](const char*, int16_t c, double z) {
        if (c != code) return false;
        found = z;
        return true;
    });
    return found;
}

std::string SnowRegionMapForm(int16_t CtrlRegion) {
    for (const RegionRow& r : kRegions)
        if (r.region == CtrlRegion) return r.map;
    return {};
}

NormLists ListsOfNorm(int16_t Norm, int16_t CtrlRegion) {
    NormLists l;
    switch (Norm) {
    case norm::DIN1986_1975: l.snowZones = SnowZoneList1975(); break;
    case norm::DIN2005:
    case norm::DIN2005_T2963:
        l.snowZones = SnowZoneList2005();
        l.windZones = Norm == norm::DIN2005 ? WindZoneList2005() : WindZoneList2005_T2963();
        l.categories = WindCategoryList2005();
        break;
    default:
        if (!IsEurocodeNorm(Norm)) break;
        l.snowZones = SnowZoneList(Norm, CtrlRegion);
        if (Norm == norm::DE) l.windZones = WindZoneList2005();
        l.categories = WindCategoryList_EN(Norm);
        l.regions = SnowRegionList(Norm);
        break;
    }
    return l;
}

}  // namespace qvrl
