#pragma once
// One row of a wind pressure coefficient table, built in or read from the
// store, and the array the selections work on.

#include <cstdint>
#include <string>
#include <vector>

#include "support/errors.h"

namespace qvrl {

// Each zone has four slots: 10 and 1 for the loaded areas of 10 m² and 1 m²,
// 10a and 1a for the second value (the other sign) where a geometry has two.
// Unused slots hold 0.
struct CpWindRecord {
    int32_t Norm = 0;  // 0 in built-in and interpolated rows
    double Alpha = 0.0;  // degrees, negative for a trough; the request of an interpolated flat roof row
    double Theta = 0.0;  // wind direction, degrees
    double HPzuH = 0.0;  // parapet height / building height
    double RzuH = 0.0;   // eaves radius / building height
    double HzuD = 0.0;   // building height / depth
    double AlphaTr = 0.0;  // mansard eaves angle, degrees

    double F10 = 0.0, F1 = 0.0, F10a = 0.0, F1a = 0.0;
    double G10 = 0.0, G1 = 0.0, G10a = 0.0, G1a = 0.0;
    double H10 = 0.0, H1 = 0.0, H10a = 0.0, H1a = 0.0;
    double I10 = 0.0, I1 = 0.0, I10a = 0.0, I1a = 0.0;
    double J10 = 0.0, J1 = 0.0, J10a = 0.0, J1a = 0.0;
    double K10 = 0.0, K1 = 0.0, K10a = 0.0, K1a = 0.0;
    double L10 = 0.0, L1 = 0.0, L10a = 0.0, L1a = 0.0;
    double M10 = 0.0, M1 = 0.0, M10a = 0.0, M1a = 0.0;
    double N10 = 0.0, N1 = 0.0, N10a = 0.0, N1a = 0.0;
    double A10 = 0.0, A1 = 0.0, A10a = 0.0, A1a = 0.0;
    double B10 = 0.0, B1 = 0.0, B10a = 0.0, B1a = 0.0;
    double C10 = 0.0, C1 = 0.0, C10a = 0.0, C1a = 0.0;
    double D10 = 0.0, D1 = 0.0, D10a = 0.0, D1a = 0.0;
    double E10 = 0.0, E1 = 0.0, E10a = 0.0, E1a = 0.0;
    // The low side of a pent roof under wind along the ridge; F is the high side.
    double Ft10 = 0.0, Ft1 = 0.0, Ft10a = 0.0, Ft1a = 0.0;

    int32_t ID = 0;     // row number of the coefficient text file
    int16_t Typ = 0;    // roof form of the coefficient text file
    int16_t TrTyp = 0;  // flat roof eaves: 1 sharp, 2 parapet, 3 rounded, 4 mansard
    std::string Remark;  // free text; nothing reads it
    double Mue = 0.0;    // opening ratio of internal pressure rows
    double Innen = 0.0;
    double Innena = 0.0;

    bool operator==(const CpWindRecord&) const = default;
};

// Rows from index 1 up; element 0 is a zero record, the result of a selection
// that found nothing.
using CpWindRows = std::vector<CpWindRecord>;

// The upper bound of the array: 0 for no rows (or no element 0 at all).
// More rows than a 16-bit count holds is error 6.
inline int16_t CpRowCount(const CpWindRows& rows) {
    if (rows.size() <= 1) return 0;
    if (rows.size() - 1 > 32767) Raise(err::Overflow);
    return static_cast<int16_t>(rows.size() - 1);
}

// The slots of one zone, for code that walks the zones.
struct CpZoneSlots {
    const char* name;
    double CpWindRecord::*s10;
    double CpWindRecord::*s1;
    double CpWindRecord::*s10a;
    double CpWindRecord::*s1a;
};

// All fifteen zones in their storage order F..N, A..E, Ft.
inline constexpr CpZoneSlots kCpZones[] = {
    {"F", &CpWindRecord::F10, &CpWindRecord::F1, &CpWindRecord::F10a, &CpWindRecord::F1a},
    {"G", &CpWindRecord::G10, &CpWindRecord::G1, &CpWindRecord::G10a, &CpWindRecord::G1a},
    {"H", &CpWindRecord::H10, &CpWindRecord::H1, &CpWindRecord::H10a, &CpWindRecord::H1a},
    {"I", &CpWindRecord::I10, &CpWindRecord::I1, &CpWindRecord::I10a, &CpWindRecord::I1a},
    {"J", &CpWindRecord::J10, &CpWindRecord::J1, &CpWindRecord::J10a, &CpWindRecord::J1a},
    {"K", &CpWindRecord::K10, &CpWindRecord::K1, &CpWindRecord::K10a, &CpWindRecord::K1a},
    {"L", &CpWindRecord::L10, &CpWindRecord::L1, &CpWindRecord::L10a, &CpWindRecord::L1a},
    {"M", &CpWindRecord::M10, &CpWindRecord::M1, &CpWindRecord::M10a, &CpWindRecord::M1a},
    {"N", &CpWindRecord::N10, &CpWindRecord::N1, &CpWindRecord::N10a, &CpWindRecord::N1a},
    {"A", &CpWindRecord::A10, &CpWindRecord::A1, &CpWindRecord::A10a, &CpWindRecord::A1a},
    {"B", &CpWindRecord::B10, &CpWindRecord::B1, &CpWindRecord::B10a, &CpWindRecord::B1a},
    {"C", &CpWindRecord::C10, &CpWindRecord::C1, &CpWindRecord::C10a, &CpWindRecord::C1a},
    {"D", &CpWindRecord::D10, &CpWindRecord::D1, &CpWindRecord::D10a, &CpWindRecord::D1a},
    {"E", &CpWindRecord::E10, &CpWindRecord::E1, &CpWindRecord::E10a, &CpWindRecord::E1a},
    {"Ft", &CpWindRecord::Ft10, &CpWindRecord::Ft1, &CpWindRecord::Ft10a, &CpWindRecord::Ft1a},
};

}  // namespace qvrl
