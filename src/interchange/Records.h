#pragma once
// The plain records a session reads from and writes to the block file, and
// the town record that the location look-ups fill. Pressures and loads are
// held in kN/m²; the block file carries them divided by the scale factor.

#include <cstdint>
#include <string>

namespace qvrl {

// One municipality. All strings start empty, all numbers 0; the block file
// carries only AGS.
struct TownRec {
    int32_t ID = 0;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    std::string Reg_Name;
    int32_t Reg_ID = 0;
    std::string LK_Name;
    int32_t LK_ID = 0;
    std::string Gemeinde;
    std::string GemeindeShort;
    int32_t Gem_ID = 0;
    std::string WZ;
    std::string SZ;
    std::string PLZ;
    std::string AGS;
    std::string BemW;
    std::string BemS;
    int16_t Modified = 0;  // 1 when a user row replaced the values
    // Eurocode look-ups only.
    int32_t Land_ID = 0;
    double qb = 0.0;
    double sk = 0.0;
    double vb = 0.0;
    double hNN = 0.0;
    std::string Land;
    std::string Land_ShortName;

    bool operator==(const TownRec&) const = default;
};

struct WindLoadRec {
    int16_t Norm = 0;
    double q0 = 0.0;   // design velocity pressure
    double h = 0.0;    // building height, m
    int16_t wz = 0;    // wind zone
    int16_t cat = 0;   // terrain or building category
    double qb = 0.0;   // basic velocity pressure
    // Not in the file: the session fills them.
    double hNN = 0.0;    // terrain height, from the snow record
    double wqRef = 0.0;  // reference pressure, from the dialog

    bool operator==(const WindLoadRec&) const = default;
};

struct SnowLoadRec {
    int16_t Norm = 0;
    double s0 = 0.0;  // design snow load
    double h = 0.0;   // terrain height above sea level, m
    int16_t sz = 0;   // snow load zone

    bool operator==(const SnowLoadRec&) const = default;
};

// A row of the live load catalogue, which is also the live load of a session.
// In the block, Wert is p0, Wert2 is P0sgl, and the basic load's four texts
// are Zeile, Unterkategorie, Nutzung and Langtext (its example, "Bsp").
struct LiveLoadRec {
    int16_t Norm = 0;
    std::string NormBez;  // at most 64 characters
    double Wert = 0.0;
    std::string Zeile;
    std::string BT;
    std::string Kategorie;
    std::string Unterkategorie;
    std::string Nutzung;
    std::string Langtext;
    std::string Kurztext;
    double Wert2 = 0.0;
    // Session values beyond the basic load's catalogue row.
    double p = 0.0;     // design live load (Rechenwert_p)
    double pAdd = 0.0;  // additional load (Zuschlag_p)
    std::string ZeileAdd;
    std::string KategorieAdd;
    std::string NutzungAdd;
    std::string BspAdd;

    bool operator==(const LiveLoadRec&) const = default;
};

struct DeadLoadRec {
    int16_t Norm = 0;
    double g0 = 0.0;
    std::string Descr0;
    double g1 = 0.0;
    std::string Descr1;
    double g2 = 0.0;
    std::string Descr2;

    bool operator==(const DeadLoadRec&) const = default;
};

}  // namespace qvrl
