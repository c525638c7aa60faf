#include "rules/PublishedWind.h"

#include "support/errors.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

constexpr const char* kNames[] = {"I", "II", "III", "IV", "coast", "inland", "islands"};

// One piece of a profile: up to zTop, qp = factor·qb·(z/10)^k, or the
// constant factor·qb where k is empty.
struct Piece {
    double zTop, factor;
    std::optional<double> k;
};
struct Profile {
    Piece pieces[3];
    int count;
    bool absolute;  // the islands' profile is given in kN/m², not as a multiple of qb
};

const Profile& ProfileOf(GermanWindProfile p) {
    static const Profile kProfiles[] = {
        {{{2.0, 1.9, {}}, {300.0, 2.6, 0.19}}, 2, false},
        {{{4.0, 1.7, {}}, {300.0, 2.1, 0.24}}, 2, false},
        {{{8.0, 1.5, {}}, {300.0, 1.6, 0.31}}, 2, false},
        {{{16.0, 1.3, {}}, {300.0, 1.1, 0.40}}, 2, false},
        {{{4.0, 1.8, {}}, {50.0, 2.3, 0.27}, {300.0, 2.6, 0.19}}, 3, false},
        {{{7.0, 1.5, {}}, {50.0, 1.7, 0.37}, {300.0, 2.1, 0.24}}, 3, false},
        {{{2.0, 1.1, {}}, {300.0, 1.5, 0.19}}, 2, true},
    };
    return kProfiles[static_cast<int>(p)];
}

bool Mixed(GermanWindProfile p) { return p >= GermanWindProfile::Coast; }

}  // namespace

const char* GermanWindProfileName(GermanWindProfile p) {
    const auto i = static_cast<size_t>(p);
    return i < std::size(kNames) ? kNames[i] : "";
}

std::optional<GermanWindProfile> GermanWindProfileFromName(const std::string& name) {
    for (size_t i = 0; i < std::size(kNames); ++i)
        if (name == kNames[i]) return static_cast<GermanWindProfile>(i);
    return std::nullopt;
}

bool GermanProfileInZone(GermanWindProfile p, int16_t WindZone) {
    if (WindZone < 1 || WindZone > 4) return false;
    if (p == GermanWindProfile::Coast) return WindZone >= 2;
    if (p == GermanWindProfile::NorthSeaIslands) return WindZone == 4;
    return true;
}

std::optional<PublishedValue> GermanBasicPressure(int16_t Norm, int16_t WindZone) {
    static const double kQb[] = {0.32, 0.39, 0.47, 0.56};
    if (WindZone < 1 || WindZone > 4) return std::nullopt;
    PublishedValue v;
    v.value = kQb[WindZone - 1];
    v.source = Norm == norm::DE ? "DIN EN 1991-1-4/NA:2010-12, Table NA.A.1" : "DIN 1055-4:2005-03, Table 1";
    return v;
}

PublishedValue GermanPeakPressure(int16_t Norm, double qb, GermanWindProfile p, double z, double A) {
    PublishedValue v;
    const bool de = Norm == norm::DE;
    v.source = Mixed(p) ? (de ? "DIN EN 1991-1-4/NA:2010-12, NA.B.3.3" : "DIN 1055-4:2005-03, 10.3")
                        : (de ? "DIN EN 1991-1-4/NA:2010-12, Table NA.B.2" : "DIN 1055-4:2005-03, Annex B, Table B.2");
    if (A > 1100.0) {
        v.note = "terrain above 1100 m: the standard asks for special consideration";
        return v;
    }
    const Profile& prof = ProfileOf(p);
    const Piece* piece = nullptr;
    for (int i = 0; i < prof.count && !piece; ++i)
        if (z <= prof.pieces[i].zTop) piece = &prof.pieces[i];
    if (!piece) {
        v.note = "the profiles end at z = 300 m";
        return v;
    }
    const double base = prof.absolute ? piece->factor : fp::Mul(piece->factor, qb);
    double q = piece->k ? fp::Mul(base, fp::Pow(fp::Div(z, 10.0), *piece->k)) : base;
    if (A > 800.0) {
        q = fp::Mul(fp::Add(0.2, fp::Div(A, 1000.0)), q);
        v.note = "raised by the factor 0.2 + A/1000 for terrain above 800 m";
    }
    v.value = q;
    return v;
}

}  // namespace qvrl
