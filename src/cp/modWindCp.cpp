#include "cp/modWindCp.h"

#include <cmath>
#include <cstddef>

#include "rules/modMath.h"
#include "support/errors.h"

namespace qvrl {

namespace {

using R = CpWindRecord;
using Col = double R::*;

// The tables of DIN 1055-4:2005, one row per line, columns as named beside
// each. Negative Alpha are troughs. The second parapet key is the standard's
// 0.025, which some prints round to 0.03.

constexpr Col kSatteldach_0Cols[] = {
    &R::Alpha, &R::F10, &R::F1, &R::F10a, &R::F1a, &R::G10, &R::G1, &R::G10a, &R::G1a, &R::H10, &R::H1, &R::H10a,
    &R::H1a, &R::I10, &R::I1, &R::I10a, &R::I1a, &R::J10, &R::J1, &R::J10a, &R::J1a};
constexpr double kSatteldach_0[][21] = {
    {-45.0,  -0.6,  -0.6,   0.0,   0.0,  -0.6,  -0.6,   0.0,   0.0,  -0.8,  -0.8,   0.0,   0.0,
      -0.7,  -0.7,   0.0,   0.0,  -1.0,  -1.5,   0.0,   0.0},
    {-30.0,  -1.1,  -2.0,   0.0,   0.0,  -0.8,  -1.5,   0.0,   0.0,  -0.8,  -0.8,   0.0,   0.0,
      -0.6,  -0.6,   0.0,   0.0,  -0.8,  -1.4,   0.0,   0.0},
    {-15.0,  -2.5,  -2.8,   0.0,   0.0,  -1.3,  -2.0,   0.0,   0.0,  -0.9,  -1.2,   0.0,   0.0,
      -0.5,  -0.5,   0.0,   0.0,  -0.7,  -1.2,   0.0,   0.0},
    { -5.0,  -2.3,  -2.5,   0.0,   0.0,  -1.2,  -2.0,   0.0,   0.0,  -0.8,  -1.2,   0.0,   0.0,
       0.2,   0.2,  -0.6,  -0.6,   0.2,   0.2,  -0.6,  -0.6},
    {  5.0,  -1.7,  -2.5,   0.0,   0.0,  -1.2,  -2.0,   0.0,   0.0,  -0.6,  -1.2,   0.0,   0.0,
       0.2,   0.2,  -0.6,  -0.6,   0.2,   0.2,  -0.6,  -0.6},
    { 10.0,  -1.3,  -2.2,   0.0,   0.0,  -1.0,  -1.7,   0.0,   0.0,  -0.4,  -0.4,   0.0,   0.0,
       0.2,   0.2,  -0.5,  -0.5,   0.2,   0.2,  -0.8,  -0.8},
    { 15.0,   0.2,   0.2,  -0.9,  -2.0,   0.2,   0.2,  -0.8,  -1.5,   0.2,   0.2,  -0.3,  -0.3,
      -0.4,  -0.4,   0.0,   0.0,  -1.0,  -1.5,   0.0,   0.0},
    { 30.0,   0.7,   0.7,  -0.5,  -1.5,   0.7,   0.7,  -0.5,  -1.5,   0.4,   0.4,  -0.2,  -0.2,
      -0.4,  -0.4,   0.0,   0.0,  -0.5,  -0.5,   0.0,   0.0},
    { 45.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.6,   0.6,   0.0,   0.0,
      -0.4,  -0.4,   0.0,   0.0,  -0.5,  -0.5,   0.0,   0.0},
    { 60.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,
      -0.4,  -0.4,   0.0,   0.0,  -0.5,  -0.5,   0.0,   0.0},
    { 75.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0,
      -0.4,  -0.4,   0.0,   0.0,  -0.5,  -0.5,   0.0,   0.0},
};

constexpr Col kSatteldach_90Cols[] = {
    &R::Alpha, &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a, &R::I1a};
constexpr double kSatteldach_90[][11] = {
    {-45.0,  -1.4,  -2.0,  -1.2,  -2.0,  -1.0,  -1.3,  -0.9,  -1.2,   0.0,   0.0},
    {-30.0,  -1.5,  -2.1,  -1.2,  -2.0,  -1.0,  -1.3,  -0.9,  -1.2,   0.0,   0.0},
    {-15.0,  -1.9,  -2.5,  -1.2,  -2.0,  -0.8,  -1.2,  -0.8,  -1.2,   0.0,   0.0},
    { -5.0,  -1.8,  -2.5,  -1.2,  -2.0,  -0.7,  -1.2,  -0.6,  -1.2,   0.0,   0.0},
    {  5.0,  -1.6,  -2.2,  -1.3,  -2.0,  -0.7,  -1.2,   0.2,   0.2,  -0.6,  -0.6},
    { 10.0,  -1.4,  -2.1,  -1.3,  -2.0,  -0.6,  -1.2,   0.2,   0.2,  -0.6,  -0.6},
    { 15.0,  -1.3,  -2.0,  -1.3,  -2.0,  -0.6,  -1.2,  -0.5,  -0.5,   0.0,   0.0},
    { 30.0,  -1.1,  -1.5,  -1.4,  -2.0,  -0.8,  -1.2,  -0.5,  -0.5,   0.0,   0.0},
    { 45.0,  -1.1,  -1.5,  -1.4,  -2.0,  -0.9,  -1.2,  -0.5,  -0.5,   0.0,   0.0},
    { 60.0,  -1.1,  -1.5,  -1.2,  -2.0,  -0.8,  -1.0,  -0.5,  -0.5,   0.0,   0.0},
    { 75.0,  -1.1,  -1.5,  -1.2,  -2.0,  -0.8,  -1.0,  -0.5,  -0.5,   0.0,   0.0},
};

constexpr Col kWalmdachCols[] = {
    &R::Alpha, &R::F10, &R::F1, &R::F10a, &R::F1a, &R::G10, &R::G1, &R::G10a, &R::G1a, &R::H10, &R::H1, &R::H10a,
    &R::H1a, &R::I10, &R::I1, &R::J10, &R::J1, &R::K10, &R::K1, &R::L10, &R::L1, &R::M10, &R::M1, &R::N10,
    &R::N1};
constexpr double kWalmdach[][25] = {
    {  5.0,  -1.7,  -2.5,   0.0,   0.0,  -1.2,  -2.0,   0.0,   0.0,  -0.6,  -1.2,   0.0,   0.0,
      -0.3,  -0.3,  -0.6,  -0.6,  -0.6,  -0.6,  -1.2,  -2.0,  -0.6,  -1.2,  -0.4,  -0.4},
    { 15.0,   0.2,   0.2,  -0.9,  -2.0,   0.2,   0.2,  -0.8,  -1.5,   0.2,   0.2,  -0.3,  -0.3,
      -0.5,  -0.5,  -1.0,  -1.5,  -1.2,  -2.0,  -1.4,  -2.0,  -0.6,  -1.2,  -0.3,  -0.3},
    { 30.0,   0.5,   0.5,  -0.5,  -1.5,   0.7,   0.7,  -0.5,  -1.5,   0.4,   0.4,  -0.2,  -0.2,
      -0.4,  -0.4,  -0.7,  -1.2,  -0.5,  -0.5,  -1.4,  -2.0,  -0.8,  -1.2,  -0.2,  -0.2},
    { 45.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.6,   0.6,   0.0,   0.0,
      -0.3,  -0.3,  -0.6,  -0.6,  -0.3,  -0.3,  -1.3,  -2.0,  -0.8,  -1.2,  -0.2,  -0.2},
    { 60.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,
      -0.3,  -0.3,  -0.6,  -0.6,  -0.3,  -0.3,  -1.2,  -2.0,  -0.4,  -0.4,  -0.2,  -0.2},
    { 75.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0,
      -0.3,  -0.3,  -0.6,  -0.6,  -0.3,  -0.3,  -1.2,  -2.0,  -0.4,  -0.4,  -0.2,  -0.2},
};

constexpr Col kFlachdach_ScharfCols[] = {
    &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a, &R::I1a};
constexpr double kFlachdach_Scharf[][10] = {
    { -1.8,  -2.5,  -1.2,  -2.0,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
};

constexpr Col kFlachdach_AttikaCols[] = {
    &R::HPzuH, &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a, &R::I1a};
constexpr double kFlachdach_Attika[][11] = {
    {  0.0,  -1.8,  -2.5,  -1.2,  -2.0,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
    {0.025,  -1.6,  -2.2,  -1.1,  -1.8,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
    { 0.05,  -1.4,  -2.0,  -0.9,  -1.6,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
    {  0.1,  -1.2,  -1.8,  -0.8,  -1.4,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
};

constexpr Col kFlachdach_GerundetCols[] = {
    &R::RzuH, &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a, &R::I1a};
constexpr double kFlachdach_Gerundet[][11] = {
    {  0.0,  -1.8,  -2.5,  -1.2,  -2.0,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
    { 0.05,  -1.0,  -1.5,  -1.2,  -1.8,  -0.4,  -0.4,  -0.2,  -0.2,   0.2,   0.2},
    {  0.1,  -0.7,  -1.2,  -0.8,  -1.4,  -0.3,  -0.3,  -0.2,  -0.2,   0.2,   0.2},
    {  0.2,  -0.5,  -0.8,  -0.5,  -0.8,  -0.3,  -0.3,  -0.2,  -0.2,   0.2,   0.2},
};

constexpr Col kFlachdach_MansardeCols[] = {
    &R::AlphaTr, &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a, &R::I1a};
constexpr double kFlachdach_Mansarde[][11] = {
    { 30.0,  -1.0,  -1.5,  -1.0,  -1.5,  -0.3,  -0.3,  -0.2,  -0.2,   0.2,   0.2},
    { 45.0,  -1.2,  -1.8,  -1.3,  -1.9,  -0.4,  -0.4,  -0.2,  -0.2,   0.2,   0.2},
    { 60.0,  -1.3,  -1.9,  -1.3,  -1.9,  -0.5,  -0.5,  -0.2,  -0.2,   0.2,   0.2},
    { 90.0,  -1.8,  -2.5,  -1.2,  -2.0,  -0.7,  -1.2,  -0.6,  -0.6,   0.2,   0.2},
};

constexpr Col kWandCols[] = {
    &R::HzuD, &R::A10, &R::A1, &R::B10, &R::B1, &R::C10, &R::C1, &R::D10, &R::D1, &R::E10, &R::E1};
constexpr double kWand[][11] = {
    {  5.0,  -1.4,  -1.7,  -0.8,  -1.1,  -0.5,  -0.7,   0.8,   1.0,  -0.5,  -0.7},
    {  1.0,  -1.2,  -1.4,  -0.8,  -1.1,  -0.5,  -0.5,   0.8,   1.0,  -0.5,  -0.5},
    { 0.25,  -1.2,  -1.4,  -0.8,  -1.1,  -0.5,  -0.5,   0.7,   1.0,  -0.3,  -0.5},
};

constexpr Col kPultdach_0Cols[] = {
    &R::Alpha, &R::F10, &R::F1, &R::F10a, &R::F1a, &R::G10, &R::G1, &R::G10a, &R::G1a, &R::H10, &R::H1, &R::H10a,
    &R::H1a};
constexpr double kPultdach_0[][13] = {
    {  5.0,  -1.7,  -2.5,   0.0,   0.0,  -1.2,  -2.0,   0.0,   0.0,   0.2,  -1.2,  -0.6,  -1.2},
    { 10.0,  -1.3,  -2.2,   0.0,   0.0,  -1.0,  -1.7,   0.0,   0.0,   0.2,  -0.7,  -0.4,  -0.7},
    { 15.0,   0.2,   0.2,  -0.9,  -2.0,   0.2,   0.2,  -0.8,  -1.5,   0.2,   0.2,  -0.3,  -0.3},
    { 30.0,   0.7,   0.7,  -0.5,  -1.5,   0.7,   0.7,  -0.5,  -1.5,   0.4,   0.4,  -0.2,  -0.2},
    { 45.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.6,   0.6,   0.0,   0.0},
    { 60.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0,   0.7,   0.7,   0.0,   0.0},
    { 75.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0,   0.8,   0.8,   0.0,   0.0},
};

constexpr Col kPultdach_90Cols[] = {
    &R::Alpha, &R::F10, &R::F1, &R::Ft10, &R::Ft1, &R::G10, &R::G1, &R::H10, &R::H1, &R::I10, &R::I1, &R::I10a,
    &R::I1a};
constexpr double kPultdach_90[][13] = {
    {  5.0,  -2.1,  -2.6,  -2.1,  -2.4,  -1.8,  -2.0,  -0.6,  -1.2,   0.2,   0.2,  -0.6,  -0.6},
    { 10.0,  -2.2,  -2.7,  -1.8,  -2.4,  -1.8,  -2.2,  -0.7,  -1.2,   0.2,   0.2,  -0.6,  -0.6},
    { 15.0,  -2.4,  -2.9,  -1.6,  -2.4,  -1.9,  -2.5,  -0.8,  -1.2,  -0.7,  -1.2,   0.0,   0.0},
    { 30.0,  -2.1,  -2.9,  -1.3,  -2.0,  -1.5,  -2.0,  -1.0,  -1.3,  -0.8,  -1.2,   0.0,   0.0},
    { 45.0,  -1.5,  -2.4,  -1.3,  -2.0,  -1.4,  -2.0,  -1.0,  -1.3,  -0.9,  -1.2,   0.0,   0.0},
    { 60.0,  -1.2,  -2.0,  -1.2,  -2.0,  -1.2,  -2.0,  -1.0,  -1.3,  -0.7,  -1.2,   0.0,   0.0},
    { 75.0,  -1.2,  -2.0,  -1.2,  -2.0,  -1.2,  -2.0,  -1.0,  -1.3,  -0.5,  -0.5,   0.0,   0.0},
};

constexpr Col kPultdach_180Cols[] = {&R::Alpha, &R::F10, &R::F1, &R::G10, &R::G1, &R::H10, &R::H1};
constexpr double kPultdach_180[][7] = {
    {  5.0,  -2.3,  -2.5,  -1.3,  -2.0,  -0.8,  -1.2},
    { 10.0,  -2.4,  -2.5,  -1.3,  -2.0,  -0.8,  -1.2},
    { 15.0,  -2.5,  -2.8,  -1.3,  -2.0,  -0.8,  -1.2},
    { 30.0,  -1.1,  -2.3,  -0.8,  -1.5,  -0.8,  -0.8},
    { 45.0,  -0.6,  -1.3,  -0.5,  -0.5,  -0.7,  -0.7},
    { 60.0,  -0.5,  -1.3,  -0.5,  -0.5,  -0.5,  -0.5},
    { 75.0,  -0.5,  -1.3,  -0.5,  -0.5,  -0.5,  -0.5},
};

template <std::size_t C, std::size_t N>
CpWindRows Build(const Col (&cols)[C], const double (&rows)[N][C]) {
    CpWindRows t(N + 1);
    for (std::size_t i = 0; i < N; ++i)
        for (std::size_t c = 0; c < C; ++c) t[i + 1].*cols[c] = rows[i][c];
    return t;
}

constexpr CpBuiltInTableInfo kInfo[] = {
    {CpBuiltInTable::Satteldach_0, 4, 0.0, 0, &R::Alpha, "Alpha"},
    {CpBuiltInTable::Satteldach_90, 4, 90.0, 0, &R::Alpha, "Alpha"},
    {CpBuiltInTable::Walmdach, 5, std::nullopt, 0, &R::Alpha, "Alpha"},
    {CpBuiltInTable::Flachdach_Scharf, 2, std::nullopt, 1, nullptr, ""},
    {CpBuiltInTable::Flachdach_Attika, 2, std::nullopt, 2, &R::HPzuH, "HPzuH"},
    {CpBuiltInTable::Flachdach_Gerundet, 2, std::nullopt, 3, &R::RzuH, "RzuH"},
    {CpBuiltInTable::Flachdach_Mansarde, 2, std::nullopt, 4, &R::AlphaTr, "AlphaTr"},
    {CpBuiltInTable::Wand, 1, std::nullopt, 0, &R::HzuD, "HzuD"},
    {CpBuiltInTable::Pultdach_0, 3, 0.0, 0, &R::Alpha, "Alpha"},
    {CpBuiltInTable::Pultdach_90, 3, 90.0, 0, &R::Alpha, "Alpha"},
    {CpBuiltInTable::Pultdach_180, 3, 180.0, 0, &R::Alpha, "Alpha"},
};

// A request that is not a number would slip through every comparison and
// pick a table by accident.
void CheckRequest(double v) {
    if (std::isnan(v)) Raise(err::Overflow, "modWindCp");
}

void SelectByAlpha(std::optional<CpBuiltInTable> table, double Theta, double Alpha, CpWindRecord& Rec) {
    if (!table) {
        Rec = CpWindRecord{};
        return;
    }
    CpScanAlpha(BuiltInCpTable(*table), Alpha, Theta, Rec);
}

}  // namespace

CpWindRows BuiltInCpTable(CpBuiltInTable table) {
    switch (table) {
        case CpBuiltInTable::Satteldach_0: return Build(kSatteldach_0Cols, kSatteldach_0);
        case CpBuiltInTable::Satteldach_90: return Build(kSatteldach_90Cols, kSatteldach_90);
        case CpBuiltInTable::Walmdach: return Build(kWalmdachCols, kWalmdach);
        case CpBuiltInTable::Flachdach_Scharf: return Build(kFlachdach_ScharfCols, kFlachdach_Scharf);
        case CpBuiltInTable::Flachdach_Attika: return Build(kFlachdach_AttikaCols, kFlachdach_Attika);
        case CpBuiltInTable::Flachdach_Gerundet: return Build(kFlachdach_GerundetCols, kFlachdach_Gerundet);
        case CpBuiltInTable::Flachdach_Mansarde: return Build(kFlachdach_MansardeCols, kFlachdach_Mansarde);
        case CpBuiltInTable::Wand: return Build(kWandCols, kWand);
        case CpBuiltInTable::Pultdach_0: return Build(kPultdach_0Cols, kPultdach_0);
        case CpBuiltInTable::Pultdach_90: return Build(kPultdach_90Cols, kPultdach_90);
        case CpBuiltInTable::Pultdach_180: return Build(kPultdach_180Cols, kPultdach_180);
    }
    Raise(err::InvalidCall, "BuiltInCpTable");
}

const CpBuiltInTableInfo& BuiltInCpTableInfo(CpBuiltInTable table) {
    for (const auto& info : kInfo)
        if (info.table == table) return info;
    Raise(err::InvalidCall, "BuiltInCpTableInfo");
}

std::vector<CpBuiltInRow> BuiltInCpRows() {
    std::vector<CpBuiltInRow> all;
    for (CpBuiltInTable table : kCpBuiltInTables) {
        const CpBuiltInTableInfo& info = BuiltInCpTableInfo(table);
        const CpWindRows rows = BuiltInCpTable(table);
        const int16_t n = CpRowCount(rows);
        for (int16_t i = 1; i <= n; ++i) {
            const CpWindRecord& r = rows[static_cast<std::size_t>(i)];
            all.push_back({info, i, info.Key ? r.*info.Key : 0.0, r});
        }
    }
    return all;
}

CpWindRecord CpInterpAlpha(double x, double t, const CpWindRecord& R1, const CpWindRecord& R2) {
    CpWindRecord r;
    r.Alpha = x;
    r.Theta = t;
    const double x1 = R1.Alpha;
    const double x2 = R2.Alpha;
    // F to J: a main value that changes sign leans on the other row's second value.
    for (std::size_t z = 0; z < 5; ++z) {
        const CpZoneSlots& s = kCpZones[z];
        r.*s.s10 = InterpolateSameSign(x1, R1.*s.s10, x2, R2.*s.s10, x, x1, R1.*s.s10a, x2, R2.*s.s10a);
        r.*s.s1 = InterpolateSameSign(x1, R1.*s.s1, x2, R2.*s.s1, x, x1, R1.*s.s1a, x2, R2.*s.s1a);
        r.*s.s10a = InterpolateSameSign(x1, R1.*s.s10a, x2, R2.*s.s10a, x, 0.0, 0.0, 0.0, 0.0);
        r.*s.s1a = InterpolateSameSign(x1, R1.*s.s1a, x2, R2.*s.s1a, x, 0.0, 0.0, 0.0, 0.0);
    }
    // K to N have no second values to lean on.
    for (std::size_t z = 5; z < 9; ++z) {
        const CpZoneSlots& s = kCpZones[z];
        r.*s.s10 = InterpolateSameSign(x1, R1.*s.s10, x2, R2.*s.s10, x, 0.0, 0.0, 0.0, 0.0);
        r.*s.s1 = InterpolateSameSign(x1, R1.*s.s1, x2, R2.*s.s1, x, 0.0, 0.0, 0.0, 0.0);
    }
    return r;
}

CpWindRecord CpInterpHzuD(double x, const CpWindRecord& R1, const CpWindRecord& R2) {
    CpWindRecord r;
    r.HzuD = x;
    for (std::size_t z = 9; z < 14; ++z) {
        const CpZoneSlots& s = kCpZones[z];
        r.*s.s10 = InterpolateGuarded(R1.HzuD, R1.*s.s10, R2.HzuD, R2.*s.s10, x);
        r.*s.s1 = InterpolateGuarded(R1.HzuD, R1.*s.s1, R2.HzuD, R2.*s.s1, x);
    }
    return r;
}

void CpScanAlpha(const CpWindRows& mCpWind, double v, double Theta, CpWindRecord& Rec) {
    Rec = CpWindRecord{};
    const int16_t n = CpRowCount(mCpWind);
    for (int16_t i = 1; i <= n; ++i) {
        const CpWindRecord& row = mCpWind[static_cast<std::size_t>(i)];
        if (std::fabs(row.Alpha - v) < kCpKeyTolerance) {
            Rec = row;
            return;
        }
        if (i > 1) {
            const CpWindRecord& below = mCpWind[static_cast<std::size_t>(i - 1)];
            const double lo = v - below.Alpha;
            const double hi = row.Alpha - v;
            if (lo > kCpKeyTolerance && hi > kCpKeyTolerance) {
                Rec = CpInterpAlpha(v, Theta, below, row);
                return;
            }
        }
    }
}

void CpScanFlat(const CpWindRows& mCpWind, double CpWindRecord::*key, double v, CpWindRecord& Rec) {
    if (!key) Raise(err::InvalidCall, "CpScanFlat");
    Rec = CpWindRecord{};
    const int16_t n = CpRowCount(mCpWind);
    for (int16_t i = 1; i <= n; ++i) {
        const CpWindRecord& row = mCpWind[static_cast<std::size_t>(i)];
        if (std::fabs(row.*key - v) < kCpKeyTolerance) {
            Rec = row;
            return;
        }
        if (i > 1) {
            const CpWindRecord& below = mCpWind[static_cast<std::size_t>(i - 1)];
            const double lo = v - below.*key;
            const double hi = row.*key - v;
            if (lo > kCpKeyTolerance && hi > kCpKeyTolerance) {
                // On the rows' Alpha, which is 0 here: the lower row's values, Alpha = v.
                Rec = CpInterpAlpha(v, 0.0, below, row);
                return;
            }
            // Below the first key as well as above the last: the last row.
            if (i == n) {
                Rec = row;
                return;
            }
        }
    }
}

void CpScanHzuD(const CpWindRows& mCpWind, double v, CpWindRecord& Rec) {
    CpScanHzuDWith(mCpWind, v, Rec,
                   [v](const CpWindRecord& smaller, const CpWindRecord& row) { return CpInterpHzuD(v, smaller, row); });
}

int16_t CpFlachdachTrTyp(double hpZuH, double rZuH, double AlphaTr, double& v) {
    if (hpZuH > kCpKeyTolerance) {
        v = hpZuH;
        return 2;
    }
    if (rZuH > kCpKeyTolerance) {
        v = rZuH;
        return 3;
    }
    if (AlphaTr > kCpKeyTolerance) {
        v = AlphaTr;
        return 4;
    }
    v = 0.0;
    return 1;
}

void Get_Wind_Cp_Satteldach(double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Theta);
    CheckRequest(Alpha);
    std::optional<CpBuiltInTable> table;
    if (Theta >= 0.0 && Theta <= 45.0)
        table = CpBuiltInTable::Satteldach_0;
    else if (Theta > 45.0 && Theta <= 90.0)
        table = CpBuiltInTable::Satteldach_90;
    SelectByAlpha(table, Theta, Alpha, Rec);
}

void Get_Wind_Cp_Walmdach(double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Theta);
    CheckRequest(Alpha);
    // Theta 0 itself picks nothing here, unlike the gabled roof.
    std::optional<CpBuiltInTable> table;
    if (Theta > 0.0 && Theta <= 90.0) table = CpBuiltInTable::Walmdach;
    SelectByAlpha(table, Theta, Alpha, Rec);
}

void Get_Wind_Cp_Pultdach(double Theta, double Alpha, CpWindRecord& Rec) {
    CheckRequest(Theta);
    CheckRequest(Alpha);
    std::optional<CpBuiltInTable> table;
    if (Theta >= 0.0 && Theta <= 45.0)
        table = CpBuiltInTable::Pultdach_0;
    else if (Theta > 45.0 && Theta <= 135.0)
        table = CpBuiltInTable::Pultdach_90;
    else if (Theta > 135.0 && Theta <= 180.0)
        table = CpBuiltInTable::Pultdach_180;
    SelectByAlpha(table, Theta, Alpha, Rec);
}

void Get_Wind_Cp_Flachdach(double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec) {
    CheckRequest(hpZuH);
    CheckRequest(rZuH);
    CheckRequest(AlphaTr);
    double v = 0.0;
    const int16_t trTyp = CpFlachdachTrTyp(hpZuH, rZuH, AlphaTr, v);
    CpBuiltInTable table = CpBuiltInTable::Flachdach_Scharf;
    switch (trTyp) {
        case 2: table = CpBuiltInTable::Flachdach_Attika; break;
        case 3: table = CpBuiltInTable::Flachdach_Gerundet; break;
        case 4: table = CpBuiltInTable::Flachdach_Mansarde; break;
        default: {
            // Sharp eaves: the one row, whatever was asked.
            Rec = BuiltInCpTable(table)[1];
            return;
        }
    }
    CpScanFlat(BuiltInCpTable(table), BuiltInCpTableInfo(table).Key, v, Rec);
}

void Get_Wind_Cp_Wand(double HzuD, CpWindRecord& Rec) {
    CheckRequest(HzuD);
    CpScanHzuD(BuiltInCpTable(CpBuiltInTable::Wand), HzuD, Rec);
}

}  // namespace qvrl
