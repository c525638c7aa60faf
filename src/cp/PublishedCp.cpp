#include "cp/PublishedCp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>

#include "cp/modWindCp.h"
#include "rules/modMath.h"
#include "support/errors.h"

namespace qvrl {

namespace {

// Not printed. A printed -0.0 or +0.0 is a value: it carries its sign into
// the interpolation of its set.
constexpr double N = std::numeric_limits<double>::quiet_NaN();

// One zone of one table row: the first printed line (v) and, where the table
// prints two, the second (w). A cell spanning c_pe,10 and c_pe,1 fills both.
struct Cell {
    double v10, v1, w10 = N, w1 = N;
};
struct Row {
    double key;
    std::vector<Cell> cells;
};
struct Table {
    const char* source;
    std::vector<const char*> zones;
    std::vector<Row> rows;  // ascending key
};

Cell S(double a) { return {a, a}; }
Cell S(double a, double b) { return {a, b}; }
Cell T(double a, double b, double p) { return {a, b, p, p}; }  // suction pair, pressure spanning both
Cell T(double a, double p) { return {a, a, p, p}; }

// --- EN 1991-1-4:2005, section 7.2, recommended values ---------------------

const Table& En71() {
    static const Table t{"Table 7.1", {"A", "B", "C", "D", "E"},
                         {{0.25, {S(-1.2, -1.4), S(-0.8, -1.1), S(-0.5), S(0.7, 1.0), S(-0.3)}},
                          {1, {S(-1.2, -1.4), S(-0.8, -1.1), S(-0.5), S(0.8, 1.0), S(-0.5)}},
                          {5, {S(-1.2, -1.4), S(-0.8, -1.1), S(-0.5), S(0.8, 1.0), S(-0.7)}}}};
    return t;
}

// DIN EN 1991-1-4/NA:2010-12, the German annex's wall table that replaces 7.1.
const Table& DeNA1() {
    static const Table t{"Table NA.1", {"A", "B", "C", "D", "E"},
                         {{0.25, {S(-1.2, -1.4), S(-0.8, -1.1), S(-0.5), S(0.7, 1.0), S(-0.3, -0.5)}},
                          {1, {S(-1.2, -1.4), S(-0.8, -1.1), S(-0.5), S(0.8, 1.0), S(-0.5)}},
                          {5, {S(-1.4, -1.7), S(-0.8, -1.1), S(-0.5, -0.7), S(0.8, 1.0), S(-0.5, -0.7)}}}};
    return t;
}

// Zone I of every flat roof row prints +0.2 and -0.2.
Cell FlatI() { return {0.2, 0.2, -0.2, -0.2}; }
Row FlatRow(double key, Cell f, Cell g, Cell h) { return {key, {f, g, h, FlatI()}}; }
Row EnSharp(double key) { return FlatRow(key, S(-1.8, -2.5), S(-1.2, -2.0), S(-0.7, -1.2)); }

const Table& En72Sharp() {
    static const Table t{"Table 7.2", {"F", "G", "H", "I"}, {EnSharp(0)}};
    return t;
}
const Table& En72Parapet() {
    static const Table t{"Table 7.2", {"F", "G", "H", "I"},
                         {EnSharp(0), FlatRow(0.025, S(-1.6, -2.2), S(-1.1, -1.8), S(-0.7, -1.2)),
                          FlatRow(0.05, S(-1.4, -2.0), S(-0.9, -1.6), S(-0.7, -1.2)),
                          FlatRow(0.1, S(-1.2, -1.8), S(-0.8, -1.4), S(-0.7, -1.2))}};
    return t;
}
const Table& En72Curved() {
    static const Table t{"Table 7.2", {"F", "G", "H", "I"},
                         {EnSharp(0), FlatRow(0.05, S(-1.0, -1.5), S(-1.2, -1.8), S(-0.4)),
                          FlatRow(0.1, S(-0.7, -1.2), S(-0.8, -1.4), S(-0.3)),
                          FlatRow(0.2, S(-0.5, -0.8), S(-0.5, -0.8), S(-0.3))}};
    return t;
}
// Above 60 degrees the table's note interpolates towards sharp eaves, kept at 90.
const Table& En72Mansard() {
    static const Table t{"Table 7.2", {"F", "G", "H", "I"},
                         {FlatRow(30, S(-1.0, -1.5), S(-1.0, -1.5), S(-0.3)),
                          FlatRow(45, S(-1.2, -1.8), S(-1.3, -1.9), S(-0.4)),
                          FlatRow(60, S(-1.3, -1.9), S(-1.3, -1.9), S(-0.5)), EnSharp(90)}};
    return t;
}

// Windward zones F, G, H of Tables 7.3a (0), 7.4a and 7.5 from 5 to 75 degrees.
std::vector<Row> WindwardRows() {
    return {{5, {T(-1.7, -2.5, 0.0), T(-1.2, -2.0, 0.0), T(-0.6, -1.2, 0.0)}},
            {15, {T(-0.9, -2.0, 0.2), T(-0.8, -1.5, 0.2), T(-0.3, 0.2)}},
            {30, {T(-0.5, -1.5, 0.7), T(-0.5, -1.5, 0.7), T(-0.2, 0.4)}},
            {45, {T(-0.0, 0.7), T(-0.0, 0.7), T(-0.0, 0.6)}},
            {60, {S(0.7), S(0.7), S(0.7)}},
            {75, {S(0.8), S(0.8), S(0.8)}}};
}

const Table& En73a0() {
    static const Table t{"Table 7.3a", {"F", "G", "H"}, WindwardRows()};
    return t;
}
const Table& En73a180() {
    static const Table t{"Table 7.3a", {"F", "G", "H"},
                         {{5, {S(-2.3, -2.5), S(-1.3, -2.0), S(-0.8, -1.2)}},
                          {15, {S(-2.5, -2.8), S(-1.3, -2.0), S(-0.9, -1.2)}},
                          {30, {S(-1.1, -2.3), S(-0.8, -1.5), S(-0.8)}},
                          {45, {S(-0.6, -1.3), S(-0.5), S(-0.7)}},
                          {60, {S(-0.5, -1.0), S(-0.5), S(-0.5)}},
                          {75, {S(-0.5, -1.0), S(-0.5), S(-0.5)}}}};
    return t;
}
const Table& En73b() {
    static const Table t{"Table 7.3b", {"F_up", "F_low", "G", "H", "I"},
                         {{5, {S(-2.1, -2.6), S(-2.1, -2.4), S(-1.8, -2.0), S(-0.6, -1.2), S(-0.5)}},
                          {15, {S(-2.4, -2.9), S(-1.6, -2.4), S(-1.9, -2.5), S(-0.8, -1.2), S(-0.7, -1.2)}},
                          {30, {S(-2.1, -2.9), S(-1.3, -2.0), S(-1.5, -2.0), S(-1.0, -1.3), S(-0.8, -1.2)}},
                          {45, {S(-1.5, -2.4), S(-1.3, -2.0), S(-1.4, -2.0), S(-1.0, -1.3), S(-0.9, -1.2)}},
                          {60, {S(-1.2, -2.0), S(-1.2, -2.0), S(-1.2, -2.0), S(-1.0, -1.3), S(-0.7, -1.2)}},
                          {75, {S(-1.2, -2.0), S(-1.2, -2.0), S(-1.2, -2.0), S(-1.0, -1.3), S(-0.5)}}}};
    return t;
}

const Table& En74a() {
    static const Table t = [] {
        Table x{"Table 7.4a", {"F", "G", "H", "I", "J"},
                {{-45, {S(-0.6), S(-0.6), S(-0.8), S(-0.7), S(-1.0, -1.5)}},
                 {-30, {S(-1.1, -2.0), S(-0.8, -1.5), S(-0.8), S(-0.6), S(-0.8, -1.4)}},
                 {-15, {S(-2.5, -2.8), S(-1.3, -2.0), S(-0.9, -1.2), S(-0.5), S(-0.7, -1.2)}},
                 {-5, {S(-2.3, -2.5), S(-1.2, -2.0), S(-0.8, -1.2), T(-0.6, 0.2), T(-0.6, 0.2)}}}};
        // Leeward I and J beside the windward rows.
        const Cell leeward[6][2] = {{T(-0.6, 0.2), T(-0.6, 0.2)},       {T(-0.4, 0.0), T(-1.0, -1.5, 0.0)},
                                    {T(-0.4, 0.0), T(-0.5, 0.0)},       {T(-0.2, 0.0), T(-0.3, 0.0)},
                                    {S(-0.2), S(-0.3)},                 {S(-0.2), S(-0.3)}};
        std::size_t i = 0;
        for (Row r : WindwardRows()) {
            r.cells.push_back(leeward[i][0]);
            r.cells.push_back(leeward[i][1]);
            x.rows.push_back(r);
            ++i;
        }
        return x;
    }();
    return t;
}
const Table& En74b() {
    static const Table t{"Table 7.4b", {"F", "G", "H", "I"},
                         {{-45, {S(-1.4, -2.0), S(-1.2, -2.0), S(-1.0, -1.3), S(-0.9, -1.2)}},
                          {-30, {S(-1.5, -2.1), S(-1.2, -2.0), S(-1.0, -1.3), S(-0.9, -1.2)}},
                          {-15, {S(-1.9, -2.5), S(-1.2, -2.0), S(-0.8, -1.2), S(-0.8, -1.2)}},
                          {-5, {S(-1.8, -2.5), S(-1.2, -2.0), S(-0.7, -1.2), S(-0.6, -1.2)}},
                          {5, {S(-1.6, -2.2), S(-1.3, -2.0), S(-0.7, -1.2), S(-0.6)}},
                          {15, {S(-1.3, -2.0), S(-1.3, -2.0), S(-0.6, -1.2), S(-0.5)}},
                          {30, {S(-1.1, -1.5), S(-1.4, -2.0), S(-0.8, -1.2), S(-0.5)}},
                          {45, {S(-1.1, -1.5), S(-1.4, -2.0), S(-0.9, -1.2), S(-0.5)}},
                          {60, {S(-1.1, -1.5), S(-1.2, -2.0), S(-0.8, -1.0), S(-0.5)}},
                          {75, {S(-1.1, -1.5), S(-1.2, -2.0), S(-0.8, -1.0), S(-0.5)}}}};
    return t;
}
const Table& En75() {
    static const Table t = [] {
        Table x{"Table 7.5", {"F", "G", "H", "I", "J", "K", "L", "M", "N"}, WindwardRows()};
        const Cell rest[6][6] = {
            {S(-0.3), S(-0.6), S(-0.6), S(-1.2, -2.0), S(-0.6, -1.2), S(-0.4)},
            {S(-0.5), S(-1.0, -1.5), S(-1.2, -2.0), S(-1.4, -2.0), S(-0.6, -1.2), S(-0.3)},
            {S(-0.4), S(-0.7, -1.2), S(-0.5), S(-1.4, -2.0), S(-0.8, -1.2), S(-0.2)},
            {S(-0.3), S(-0.6), S(-0.3), S(-1.3, -2.0), S(-0.8, -1.2), S(-0.2)},
            {S(-0.3), S(-0.6), S(-0.3), S(-1.2, -2.0), S(-0.4), S(-0.2)},
            {S(-0.3), S(-0.6), S(-0.3), S(-1.2, -2.0), S(-0.4), S(-0.2)}};
        // F at 30 degrees is the one windward cell where the hipped table differs.
        x.rows[2].cells[0] = T(-0.5, -1.5, 0.5);
        for (std::size_t i = 0; i < x.rows.size(); ++i)
            x.rows[i].cells.insert(x.rows[i].cells.end(), std::begin(rest[i]), std::end(rest[i]));
        return x;
    }();
    return t;
}

// --- DIN 1055-4:2005 from the component's own built-in tables --------------

// The built-in rows keep the second value of the other sign in the a slots
// and 0 for an empty cell; here each slot pair becomes one printed cell. At
// 45 degrees the tables print -0.0 beside the pressure of F, G, H for the
// interpolation towards 30 degrees, which the built-in rows store as 0.
Table FromBuiltIn(CpBuiltInTable which, const char* source, std::vector<const char*> zones, bool minusZeroAt45) {
    Table t{source, zones, {}};
    for (const CpBuiltInRow& br : BuiltInCpRows()) {
        if (br.info.table != which) continue;
        Row row{br.Key, {}};
        for (const char* z : zones) {
            const CpZoneSlots* slots = nullptr;
            const std::string name = std::string(z) == "F_up" ? "F" : std::string(z) == "F_low" ? "Ft" : z;
            for (const CpZoneSlots& s : kCpZones)
                if (name == s.name) slots = &s;
            const CpWindRecord& r = br.Rec;
            const auto printed = [](double v) { return v == 0.0 ? N : v; };
            Cell c{printed(r.*slots->s10), printed(r.*slots->s1), printed(r.*slots->s10a), printed(r.*slots->s1a)};
            const bool windward = name == "F" || name == "G" || name == "H";
            if (minusZeroAt45 && windward && br.Key == 45.0 && std::isnan(c.w10) && c.v10 > 0.0) c.w10 = c.w1 = -0.0;
            row.cells.push_back(c);
        }
        t.rows.push_back(row);
    }
    std::sort(t.rows.begin(), t.rows.end(), [](const Row& a, const Row& b) { return a.key < b.key; });
    return t;
}

const Table& Din(CpBuiltInTable which) {
    static const std::vector<std::pair<CpBuiltInTable, Table>> all = [] {
        using B = CpBuiltInTable;
        const std::vector<const char*> fghi = {"F", "G", "H", "I"};
        return std::vector<std::pair<B, Table>>{
            {B::Wand, FromBuiltIn(B::Wand, "Tabelle 3", {"A", "B", "C", "D", "E"}, false)},
            {B::Flachdach_Scharf, FromBuiltIn(B::Flachdach_Scharf, "Tabelle 4", fghi, false)},
            {B::Flachdach_Attika, FromBuiltIn(B::Flachdach_Attika, "Tabelle 4", fghi, false)},
            {B::Flachdach_Gerundet, FromBuiltIn(B::Flachdach_Gerundet, "Tabelle 4", fghi, false)},
            {B::Flachdach_Mansarde, FromBuiltIn(B::Flachdach_Mansarde, "Tabelle 4", fghi, false)},
            {B::Pultdach_0, FromBuiltIn(B::Pultdach_0, "Tabelle 5", {"F", "G", "H"}, true)},
            {B::Pultdach_90, FromBuiltIn(B::Pultdach_90, "Tabelle 5", {"F_up", "F_low", "G", "H", "I"}, false)},
            {B::Pultdach_180, FromBuiltIn(B::Pultdach_180, "Tabelle 5", {"F", "G", "H"}, false)},
            {B::Satteldach_0, FromBuiltIn(B::Satteldach_0, "Tabelle 6", {"F", "G", "H", "I", "J"}, true)},
            {B::Satteldach_90, FromBuiltIn(B::Satteldach_90, "Tabelle 6", fghi, false)},
            {B::Walmdach,
             FromBuiltIn(B::Walmdach, "Tabelle 7", {"F", "G", "H", "I", "J", "K", "L", "M", "N"}, true)},
        };
    }();
    for (const auto& [k, t] : all)
        if (k == which) return t;
    Raise(err::InvalidCall, "PublishedCpOf");
}

// --- selection ---------------------------------------------------------------

enum class Set { Suction, Pressure };

// The value a set takes from one printed cell: a single line serves both sets.
double Pick(double v, double w, Set s) {
    if (std::isnan(w)) return v;
    const bool wantNeg = s == Set::Suction;
    if (!std::isnan(v) && std::signbit(v) == wantNeg) return v;
    if (std::signbit(w) == wantNeg) return w;
    return N;
}

// Only values of one sign are joined; -0.0 joins the negative side.
double Join(double k0, double y0, double k1, double y1, double x) {
    if (std::isnan(y0) || std::isnan(y1) || std::signbit(y0) != std::signbit(y1)) return N;
    return Interpolate(k0, y0, k1, y1, x);
}

std::optional<double> Opt(double v) { return std::isnan(v) ? std::nullopt : std::optional<double>(v); }

bool Same(const std::optional<double>& a, const std::optional<double>& b) {
    if (!a || !b) return !a && !b;
    return *a == *b && std::signbit(*a) == std::signbit(*b);
}

std::string Num(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}

// The sets of a table at key x, which must lie within its keys. Two sets
// where some zone carries different values in them, else one.
std::vector<PublishedCpSet> SetsAt(const Table& t, double x) {
    std::size_t lo = 0, hi = 0;
    for (std::size_t i = 0; i < t.rows.size(); ++i) {
        if (std::fabs(t.rows[i].key - x) < kCpKeyTolerance) {
            lo = hi = i;
            break;
        }
        if (i + 1 < t.rows.size() && t.rows[i].key < x && x < t.rows[i + 1].key) {
            lo = i;
            hi = i + 1;
        }
    }
    PublishedCpSet sets[2] = {{"suction", {}, {}}, {"pressure", {}, {}}};
    for (int k = 0; k < 2; ++k) {
        const Set s = k == 0 ? Set::Suction : Set::Pressure;
        for (std::size_t z = 0; z < t.zones.size(); ++z) {
            const Cell& a = t.rows[lo].cells[z];
            const Cell& b = t.rows[hi].cells[z];
            double v10 = Pick(a.v10, a.w10, s), v1 = Pick(a.v1, a.w1, s);
            if (lo != hi) {
                v10 = Join(t.rows[lo].key, v10, t.rows[hi].key, Pick(b.v10, b.w10, s), x);
                v1 = Join(t.rows[lo].key, v1, t.rows[hi].key, Pick(b.v1, b.w1, s), x);
            }
            sets[k].values.push_back({t.zones[z], Opt(v10), Opt(v1)});
        }
    }
    bool mergeable = true;
    for (std::size_t z = 0; z < t.zones.size(); ++z) {
        const PublishedCpValue &u = sets[0].values[z], &p = sets[1].values[z];
        const bool clash = (u.cpe10 && p.cpe10 && !Same(u.cpe10, p.cpe10)) || (u.cpe1 && p.cpe1 && !Same(u.cpe1, p.cpe1));
        if (clash) mergeable = false;
    }
    std::vector<PublishedCpSet> out;
    if (mergeable) {
        PublishedCpSet one{"", {}, {}};
        for (std::size_t z = 0; z < t.zones.size(); ++z) {
            const PublishedCpValue &u = sets[0].values[z], &p = sets[1].values[z];
            one.values.push_back({u.zone, u.cpe10 ? u.cpe10 : p.cpe10, u.cpe1 ? u.cpe1 : p.cpe1});
        }
        out.push_back(one);
    } else {
        out.assign(std::begin(sets), std::end(sets));
    }
    for (PublishedCpSet& set : out) {
        std::string missing;
        for (const PublishedCpValue& v : set.values)
            if (!v.cpe10 || !v.cpe1) missing += (missing.empty() ? "" : ", ") + v.zone;
        if (!missing.empty())
            set.note = "no value of this set for " + missing + (lo != hi ? " at " + Num(x) + " degrees: the neighbouring pitches " +
                                                                     Num(t.rows[lo].key) + " and " + Num(t.rows[hi].key) +
                                                                     " give none of one sign"
                                                               : " at " + Num(x) + " degrees in the table");
    }
    return out;
}

// --- geometry ----------------------------------------------------------------

using Pt = std::pair<double, double>;

void Rect(std::vector<PublishedZoneShape>& out, const char* zone, double x0, double x1, double y0, double y1) {
    if (x1 - x0 <= 0.0 || y1 - y0 <= 0.0) return;
    out.push_back({zone, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}});
}

// Edge strip of depth e/10 with corner zones e/4 wide, as flat and pitched roofs have it.
void EdgeStrip(std::vector<PublishedZoneShape>& out, double e, double xEnd, double b, const char* corner,
               const char* middle, const char* otherCorner) {
    const double x1 = std::min(e / 10.0, xEnd), c = e / 4.0;
    Rect(out, corner, 0, x1, 0, c);
    Rect(out, middle, 0, x1, c, b - c);
    Rect(out, otherCorner, 0, x1, b - c, b);
}

void WallShapes(PublishedCpDirection& d) {
    const double e = d.e, L = d.dWind, b = d.bWind;
    auto& o = d.shapes;
    o.push_back({"D", {{0, 0}, {0, b}}});
    o.push_back({"E", {{L, 0}, {L, b}}});
    const double a = std::min(e / 5.0, L), bEnd = std::min(e, L);
    for (double y : {0.0, b}) {
        o.push_back({"A", {{0, y}, {a, y}}});
        if (bEnd > a) o.push_back({"B", {{a, y}, {bEnd, y}}});
        if (L > bEnd) o.push_back({"C", {{bEnd, y}, {L, y}}});
    }
}

void FlatShapes(PublishedCpDirection& d) {
    const double e = d.e, L = d.dWind, b = d.bWind;
    EdgeStrip(d.shapes, e, L, b, "F", "G", "F");
    Rect(d.shapes, "H", e / 10.0, std::min(e / 2.0, L), 0, b);
    Rect(d.shapes, "I", e / 2.0, L, 0, b);
}

void PentShapes(PublishedCpDirection& d) {
    const double e = d.e, L = d.dWind, b = d.bWind;
    if (d.theta == 90.0) {
        EdgeStrip(d.shapes, e, L, b, "F_up", "G", "F_low");
        Rect(d.shapes, "H", e / 10.0, std::min(e / 2.0, L), 0, b);
        Rect(d.shapes, "I", e / 2.0, L, 0, b);
    } else {
        EdgeStrip(d.shapes, e, L, b, "F", "G", "F");
        Rect(d.shapes, "H", e / 10.0, L, 0, b);
    }
}

void GabledShapes(PublishedCpDirection& d) {
    const double e = d.e, L = d.dWind, b = d.bWind;
    if (d.theta == 0.0) {
        const double ridge = L / 2.0;
        EdgeStrip(d.shapes, e, ridge, b, "F", "G", "F");
        Rect(d.shapes, "H", e / 10.0, ridge, 0, b);
        Rect(d.shapes, "J", ridge, std::min(ridge + e / 10.0, L), 0, b);
        Rect(d.shapes, "I", ridge + e / 10.0, L, 0, b);
    } else {
        // The ridge runs along the wind at y = b/2 and splits G and H.
        const double x1 = std::min(e / 10.0, L), c = e / 4.0, m = b / 2.0;
        Rect(d.shapes, "F", 0, x1, 0, c);
        Rect(d.shapes, "G", 0, x1, c, m);
        Rect(d.shapes, "G", 0, x1, m, b - c);
        Rect(d.shapes, "F", 0, x1, b - c, b);
        const double x2 = std::min(e / 2.0, L);
        Rect(d.shapes, "H", e / 10.0, x2, 0, m);
        Rect(d.shapes, "H", e / 10.0, x2, m, b);
        Rect(d.shapes, "I", e / 2.0, L, 0, b);
    }
}

// --- assembly ----------------------------------------------------------------

struct Annex {
    bool din;          // DIN 1055-4:2005
    bool recommended;  // recommended EN values under an annex
    bool germanWalls;
};

std::string SourceOf(const Annex& a, const Table& t) {
    if (a.din) return std::string("DIN 1055-4:2005-03, ") + t.source;
    if (std::string(t.source) == "Table NA.1") return "DIN EN 1991-1-4/NA:2010-12, Table NA.1";
    return std::string("EN 1991-1-4:2005, ") + t.source + (a.recommended ? " (recommended values)" : "");
}

PublishedCpDirection Direction(const PublishedCpQuery& q, double theta) {
    PublishedCpDirection d{};
    d.theta = theta;
    const bool across = theta == 90.0;
    d.bWind = across ? q.d : q.b;
    d.dWind = across ? q.b : q.d;
    d.e = std::min(d.bWind, 2.0 * q.h);
    return d;
}

// The key of a table clamped to its ends, saying so in the note.
double Clamp(const Table& t, double x, const char* what, std::string& note) {
    const double lo = t.rows.front().key, hi = t.rows.back().key;
    if (x < lo - kCpKeyTolerance) {
        note = std::string(what) + " " + Num(x) + " is below the table's first row " + Num(lo) + ", whose values are given";
        return lo;
    }
    if (x > hi + kCpKeyTolerance) {
        note = std::string(what) + " " + Num(x) + " is above the table's last row " + Num(hi) + ", whose values are given";
        return hi;
    }
    return x;
}

void Fill(PublishedCpDirection& d, const Annex& a, const Table& t, double x) {
    d.source = SourceOf(a, t);
    d.recommended = a.recommended && std::string(t.source) != "Table NA.1";
    d.sets = SetsAt(t, x);
}

bool InPitchRange(const Table& t, double alpha, PublishedCpDirection& d, double flatBelow) {
    if (std::fabs(alpha) < flatBelow - kCpKeyTolerance) {
        d.note = "pitch " + Num(alpha) + " degrees: a roof this flat takes the flat roof coefficients";
        return false;
    }
    if (alpha < t.rows.front().key - kCpKeyTolerance || alpha > t.rows.back().key + kCpKeyTolerance) {
        d.note = "pitch " + Num(alpha) + " degrees lies outside the table (" + Num(t.rows.front().key) + " to " +
                 Num(t.rows.back().key) + " degrees)";
        return false;
    }
    return true;
}

void CheckQuery(const PublishedCpQuery& q) {
    const auto positive = [](double v) { return std::isfinite(v) && v > 0.0; };
    if (!positive(q.h) || !positive(q.b) || !positive(q.d))
        Raise(err::InvalidCall, "PublishedCpOf", "height, width and depth must be positive numbers of metres");
    if (!std::isfinite(q.alpha) || !std::isfinite(q.hpZuH) || !std::isfinite(q.rZuH) || !std::isfinite(q.AlphaTr) ||
        q.hpZuH < 0.0 || q.rZuH < 0.0 || q.AlphaTr < 0.0)
        Raise(err::InvalidCall, "PublishedCpOf", "pitch and eaves ratios must be finite, the ratios not negative");
}

}  // namespace

std::vector<PublishedCpDirection> PublishedCpOf(const PublishedCpQuery& q) {
    CheckQuery(q);
    Annex a{};
    switch (q.Norm) {
        case 3: case 31: a = {true, false, false}; break;
        case 54: a = {false, false, false}; break;
        case 50: a = {false, true, true}; break;
        case 51: case 52: case 53: a = {false, true, false}; break;
        default: return {};
    }
    using B = CpBuiltInTable;
    std::vector<PublishedCpDirection> out;
    switch (q.form) {
        case PublishedForm::Wall: {
            const Table& t = a.din ? Din(B::Wand) : a.germanWalls ? DeNA1() : En71();
            for (double theta : {0.0, 90.0}) {
                PublishedCpDirection d = Direction(q, theta);
                // The end rows stand for h/d <= 0.25 and h/d >= 5.
                const double x = std::clamp(q.h / d.dWind, t.rows.front().key, t.rows.back().key);
                Fill(d, a, t, x);
                WallShapes(d);
                out.push_back(d);
            }
            break;
        }
        case PublishedForm::Flat: {
            // The first eaves ratio given decides, as the member's route reads them.
            const Table* t;
            double x = 0;
            const char* what = "";
            if (q.hpZuH >= kCpKeyTolerance) {
                t = a.din ? &Din(B::Flachdach_Attika) : &En72Parapet();
                x = q.hpZuH, what = "hp/h";
            } else if (q.rZuH >= kCpKeyTolerance) {
                t = a.din ? &Din(B::Flachdach_Gerundet) : &En72Curved();
                x = q.rZuH, what = "r/h";
            } else if (q.AlphaTr >= kCpKeyTolerance) {
                t = a.din ? &Din(B::Flachdach_Mansarde) : &En72Mansard();
                x = q.AlphaTr, what = "mansard angle";
            } else {
                t = a.din ? &Din(B::Flachdach_Scharf) : &En72Sharp();
            }
            for (double theta : {0.0, 90.0}) {
                PublishedCpDirection d = Direction(q, theta);
                if (std::string(what) == "mansard angle" && x < t->rows.front().key - kCpKeyTolerance) {
                    d.source = SourceOf(a, *t);
                    d.recommended = a.recommended;
                    d.note = "mansard angle " + Num(x) + " degrees lies below the table's first row " +
                             Num(t->rows.front().key);
                } else {
                    const double k = t->rows.size() == 1 ? t->rows.front().key : Clamp(*t, x, what, d.note);
                    Fill(d, a, *t, k);
                }
                FlatShapes(d);
                out.push_back(d);
            }
            break;
        }
        case PublishedForm::Pent: {
            const std::pair<double, const Table*> dirs[] = {
                {0.0, a.din ? &Din(B::Pultdach_0) : &En73a0()},
                {90.0, a.din ? &Din(B::Pultdach_90) : &En73b()},
                {180.0, a.din ? &Din(B::Pultdach_180) : &En73a180()}};
            for (const auto& [theta, t] : dirs) {
                PublishedCpDirection d = Direction(q, theta);
                d.source = SourceOf(a, *t);
                d.recommended = a.recommended;
                if (InPitchRange(*t, q.alpha, d, 5.0)) Fill(d, a, *t, q.alpha);
                PentShapes(d);
                out.push_back(d);
            }
            break;
        }
        case PublishedForm::Gabled: {
            const std::pair<double, const Table*> dirs[] = {
                {0.0, a.din ? &Din(B::Satteldach_0) : &En74a()}, {90.0, a.din ? &Din(B::Satteldach_90) : &En74b()}};
            for (const auto& [theta, t] : dirs) {
                PublishedCpDirection d = Direction(q, theta);
                d.source = SourceOf(a, *t);
                d.recommended = a.recommended;
                if (InPitchRange(*t, q.alpha, d, 5.0)) Fill(d, a, *t, q.alpha);
                GabledShapes(d);
                out.push_back(d);
            }
            break;
        }
        case PublishedForm::Hipped: {
            const Table& t = a.din ? Din(B::Walmdach) : En75();
            for (double theta : {0.0, 90.0}) {
                PublishedCpDirection d = Direction(q, theta);
                d.source = SourceOf(a, t);
                d.recommended = a.recommended;
                if (InPitchRange(t, q.alpha, d, 5.0)) Fill(d, a, t, q.alpha);
                if (!d.note.empty()) d.note += "; ";
                d.note += "zone shapes of hipped roofs depend on the hip lines and are not drawn";
                out.push_back(d);
            }
            break;
        }
        default:
            Raise(err::InvalidCall, "PublishedCpOf", "unknown roof form");
    }
    return out;
}

}  // namespace qvrl
