#pragma once
// External pressure coefficients of DIN 1055-4:2005 for walls, flat, pent,
// gabled and hipped roofs, carried in the code, and the selection on them.
// This route never looks at a Norm: it is the same for every standard.
//
// Each table is built for the one selection that asks for it and dropped
// afterwards; nothing is cached and no table is ever changed. Nothing here
// writes to the trace log.
//
// A request value that is not a number is error 6. Infinities need no rule
// of their own: they fall outside every table like any other far value.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "cp/CpWindRecord.h"

namespace qvrl {

// One tolerance for every key, degrees and ratios alike. A key closer than
// this is a hit; a bracket needs both sides further away than this.
inline constexpr double kCpKeyTolerance = 0.001;

// The requests of a wall above this HzuD take the first row, whatever it holds.
inline constexpr double kCpWandHzuDMax = 5.0;

enum class CpBuiltInTable : int16_t {
    Satteldach_0,        // gabled roof and trough, Theta 0 to 45
    Satteldach_90,       // gabled roof and trough, Theta above 45 to 90
    Walmdach,            // hipped roof
    Flachdach_Scharf,    // flat roof, sharp eaves (TrTyp 1), one row
    Flachdach_Attika,    // flat roof with parapet (TrTyp 2), key HPzuH
    Flachdach_Gerundet,  // flat roof, rounded eaves (TrTyp 3), key RzuH
    Flachdach_Mansarde,  // flat roof, mansard eaves (TrTyp 4), key AlphaTr
    Wand,                // vertical walls, key HzuD falling
    Pultdach_0,          // pent roof, Theta 0
    Pultdach_90,         // pent roof, Theta 90: the only table with Ft
    Pultdach_180,        // pent roof, Theta 180
};

inline constexpr CpBuiltInTable kCpBuiltInTables[] = {
    CpBuiltInTable::Satteldach_0,       CpBuiltInTable::Satteldach_90,      CpBuiltInTable::Walmdach,
    CpBuiltInTable::Flachdach_Scharf,   CpBuiltInTable::Flachdach_Attika,   CpBuiltInTable::Flachdach_Gerundet,
    CpBuiltInTable::Flachdach_Mansarde, CpBuiltInTable::Wand,               CpBuiltInTable::Pultdach_0,
    CpBuiltInTable::Pultdach_90,        CpBuiltInTable::Pultdach_180,
};

// A freshly built table: rows 1..n in table order, element 0 a zero record.
// Only the key and the zones of the table are set; everything else is 0.
CpWindRows BuiltInCpTable(CpBuiltInTable table);

// What a built-in table stands for, in the terms of the coefficient store.
struct CpBuiltInTableInfo {
    CpBuiltInTable table;
    int16_t Typ;                  // 1 wall, 2 flat, 3 pent, 4 gabled, 5 hipped
    std::optional<double> Theta;  // the direction of the table; empty where it serves any
    int16_t TrTyp;                // eaves type of a flat roof table, else 0
    // The record field that holds the key, and its name; empty for the
    // one-row sharp eaves table.
    double CpWindRecord::*Key;
    const char* KeyName;
};
const CpBuiltInTableInfo& BuiltInCpTableInfo(CpBuiltInTable table);

// One row of a built-in table with the keys that place it.
struct CpBuiltInRow {
    CpBuiltInTableInfo info;
    int16_t Row;     // position in its table, from 1
    double Key;      // the row's key value; 0 for the sharp eaves row
    CpWindRecord Rec;
};
// Every row of every built-in table, table by table in the order of
// kCpBuiltInTables, rows in table order.
std::vector<CpBuiltInRow> BuiltInCpRows();

// Interpolation between two rows on their Alpha; the result has Alpha x and
// Theta t. F to J get all four slots, a main value that changes sign leaning
// on the second value of the other row; K to N get their main slots only; A to
// E and Ft stay 0.
CpWindRecord CpInterpAlpha(double x, double t, const CpWindRecord& R1, const CpWindRecord& R2);
// Interpolation of wall rows; R1 is the row of the smaller HzuD. Only the main
// slots of A to E, with 0 standing for a missing value.
CpWindRecord CpInterpHzuD(double x, const CpWindRecord& R1, const CpWindRecord& R2);

// The key scans of this route, on rows that ascend by their key (walls: fall).
// Rec starts as the zero record; what no row settles stays so.
// Rows by Alpha: a hit, or the bracket between two rows; outside the table
// and in the gap of exactly the tolerance, nothing.
void CpScanAlpha(const CpWindRows& mCpWind, double v, double Theta, CpWindRecord& Rec);
// Flat roof rows by the given key field: a hit, else the bracket (which, on
// the rows' Alpha of 0, takes the lower row), else the last row. An empty key
// is error 5.
void CpScanFlat(const CpWindRows& mCpWind, double CpWindRecord::*key, double v, CpWindRecord& Rec);
// Wall rows by falling HzuD: above kCpWandHzuDMax or the first row the first
// row, below the last row the last row, between two rows the interpolation.
void CpScanHzuD(const CpWindRows& mCpWind, double v, CpWindRecord& Rec);

// The wall scan with the route's own interpolation (smaller, larger row);
// both routes walk the rows alike and differ only there.
template <class Interp>
void CpScanHzuDWith(const CpWindRows& mCpWind, double v, CpWindRecord& Rec, Interp interp) {
    Rec = CpWindRecord{};
    const int16_t n = CpRowCount(mCpWind);
    if (n == 0) return;
    if (v > kCpWandHzuDMax) {
        Rec = mCpWind[1];
        return;
    }
    for (int16_t i = 1; i <= n; ++i) {
        const CpWindRecord& row = mCpWind[static_cast<std::size_t>(i)];
        if (std::fabs(row.HzuD - v) < kCpKeyTolerance || (v > row.HzuD && i == 1) || (i == n && v < row.HzuD)) {
            Rec = row;
            return;
        }
        if (i < n) {
            const CpWindRecord& smaller = mCpWind[static_cast<std::size_t>(i + 1)];
            if (v - smaller.HzuD > kCpKeyTolerance && row.HzuD - v > kCpKeyTolerance) {
                Rec = interp(smaller, row);
                return;
            }
        }
    }
}

// The eaves of a flat roof request: the first of hpZuH, rZuH, AlphaTr that is
// above the tolerance decides (TrTyp 2, 3, 4) and its value is the key v;
// none gives TrTyp 1 and v 0.
int16_t CpFlachdachTrTyp(double hpZuH, double rZuH, double AlphaTr, double& v);

// The built-in route of each roof form. Rec is overwritten. A Theta that picks
// no table, or an Alpha outside the table, gives the zero record; a wall
// outside its table takes the end row nearest to it, a flat roof outside its
// keys the last row.
void Get_Wind_Cp_Satteldach(double Theta, double Alpha, CpWindRecord& Rec);
void Get_Wind_Cp_Walmdach(double Theta, double Alpha, CpWindRecord& Rec);
void Get_Wind_Cp_Flachdach(double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec);
void Get_Wind_Cp_Wand(double HzuD, CpWindRecord& Rec);
void Get_Wind_Cp_Pultdach(double Theta, double Alpha, CpWindRecord& Rec);

}  // namespace qvrl
