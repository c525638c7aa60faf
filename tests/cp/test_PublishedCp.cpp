// The coefficients as the published tables print them: hand-checked cells,
// same-sign interpolation, the zone plans, and agreement with the store rows.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "cp/PublishedCp.h"
#include "cp/modWindCpMdb.h"

namespace qvrl {
namespace {

// The tables' linear interpolation, in the order the code computes it.
double Lin(double x0, double y0, double x1, double y1, double x) { return (x - x0) / (x1 - x0) * (y1 - y0) + y0; }

constexpr double kNone = 99.0;  // the set has no value here

struct Want {
    std::string zone;
    double cpe10, cpe1;
};

struct Case {
    const char* what;  // source table and what the row checks
    int16_t norm;
    PublishedForm form;
    double alpha, theta;
    std::string label;  // set
    std::vector<Want> cells;
    double hpZuH = 0, rZuH = 0, AlphaTr = 0;
    double h = 10, b = 30, d = 20;
};

const PublishedCpDirection* DirOf(const std::vector<PublishedCpDirection>& all, double theta) {
    for (const auto& d : all)
        if (d.theta == theta) return &d;
    return nullptr;
}

void ExpectValue(const std::optional<double>& got, double want, const char* what) {
    if (want == kNone) {
        EXPECT_FALSE(got.has_value()) << what;
        return;
    }
    ASSERT_TRUE(got.has_value()) << what;
    EXPECT_EQ(*got, want) << what;
    EXPECT_EQ(std::signbit(*got), std::signbit(want)) << what << ": a printed -0.0 keeps its sign";
}

TEST(PublishedCp, PrintedCellsAndSameSignInterpolation) {
    using F = PublishedForm;
    const std::vector<Case> cases = {
        // EN 1991-1-4 Table 7.4a, theta 0
        {"7.4a 5", 54, F::Gabled, 5, 0, "suction", {{"F", -1.7, -2.5}, {"H", -0.6, -1.2}, {"I", -0.6, -0.6}}},
        {"7.4a 5", 54, F::Gabled, 5, 0, "pressure", {{"F", 0.0, 0.0}, {"H", 0.0, 0.0}, {"J", 0.2, 0.2}}},
        {"7.4a 10", 54, F::Gabled, 10, 0, "suction",
         {{"F", Lin(5, -1.7, 15, -0.9, 10), Lin(5, -2.5, 15, -2.0, 10)},
          {"I", Lin(5, -0.6, 15, -0.4, 10), Lin(5, -0.6, 15, -0.4, 10)},
          {"J", Lin(5, -0.6, 15, -1.0, 10), Lin(5, -0.6, 15, -1.5, 10)}}},
        {"7.4a 10", 54, F::Gabled, 10, 0, "pressure",
         {{"F", Lin(5, 0.0, 15, 0.2, 10), Lin(5, 0.0, 15, 0.2, 10)}, {"I", Lin(5, 0.2, 15, 0.0, 10), Lin(5, 0.2, 15, 0.0, 10)}}},
        {"7.4a 15", 54, F::Gabled, 15, 0, "suction", {{"F", -0.9, -2.0}, {"H", -0.3, -0.3}, {"J", -1.0, -1.5}}},
        {"7.4a 15", 54, F::Gabled, 15, 0, "pressure", {{"G", 0.2, 0.2}, {"I", 0.0, 0.0}, {"J", 0.0, 0.0}}},
        {"7.4a 30", 54, F::Gabled, 30, 0, "suction", {{"G", -0.5, -1.5}, {"H", -0.2, -0.2}, {"J", -0.5, -0.5}}},
        {"7.4a 30", 54, F::Gabled, 30, 0, "pressure", {{"F", 0.7, 0.7}, {"H", 0.4, 0.4}}},
        {"7.4a 35: suction runs to the printed -0.0", 54, F::Gabled, 35, 0, "suction",
         {{"F", Lin(30, -0.5, 45, -0.0, 35), Lin(30, -1.5, 45, -0.0, 35)}, {"I", Lin(30, -0.4, 45, -0.2, 35), Lin(30, -0.4, 45, -0.2, 35)}}},
        {"7.4a 35", 54, F::Gabled, 35, 0, "pressure", {{"F", 0.7, 0.7}, {"H", Lin(30, 0.4, 45, 0.6, 35), Lin(30, 0.4, 45, 0.6, 35)}}},
        {"7.4a 40", 54, F::Gabled, 40, 0, "suction", {{"H", Lin(30, -0.2, 45, -0.0, 40), Lin(30, -0.2, 45, -0.0, 40)}}},
        {"7.4a 45", 54, F::Gabled, 45, 0, "suction", {{"F", -0.0, -0.0}, {"I", -0.2, -0.2}, {"J", -0.3, -0.3}}},
        {"7.4a 45", 54, F::Gabled, 45, 0, "pressure", {{"F", 0.7, 0.7}, {"H", 0.6, 0.6}, {"J", 0.0, 0.0}}},
        {"7.4a 50: one set, each zone from its own sign", 54, F::Gabled, 50, 0, "",
         {{"F", 0.7, 0.7}, {"H", Lin(45, 0.6, 60, 0.7, 50), Lin(45, 0.6, 60, 0.7, 50)}, {"I", -0.2, -0.2}}},
        {"7.4a trough -10: pressure of I has no partner at -15", 54, F::Gabled, -10, 0, "",
         {{"F", Lin(-15, -2.5, -5, -2.3, -10), Lin(-15, -2.8, -5, -2.5, -10)}, {"I", Lin(-15, -0.5, -5, -0.6, -10), Lin(-15, -0.5, -5, -0.6, -10)}}},
        // Table 7.4b, theta 90
        {"7.4b 10", 54, F::Gabled, 10, 90, "",
         {{"F", Lin(5, -1.6, 15, -1.3, 10), Lin(5, -2.2, 15, -2.0, 10)}, {"I", Lin(5, -0.6, 15, -0.5, 10), Lin(5, -0.6, 15, -0.5, 10)}}},
        // Table 7.5, the same at theta 0 and 90
        {"7.5 5", 54, F::Hipped, 5, 0, "suction", {{"F", -1.7, -2.5}, {"I", -0.3, -0.3}, {"L", -1.2, -2.0}}},
        {"7.5 5", 54, F::Hipped, 5, 90, "pressure", {{"F", 0.0, 0.0}, {"I", -0.3, -0.3}}},
        {"7.5 10", 54, F::Hipped, 10, 0, "suction",
         {{"F", Lin(5, -1.7, 15, -0.9, 10), Lin(5, -2.5, 15, -2.0, 10)}, {"K", Lin(5, -0.6, 15, -1.2, 10), Lin(5, -0.6, 15, -2.0, 10)}}},
        {"7.5 10", 54, F::Hipped, 10, 0, "pressure", {{"G", Lin(5, 0.0, 15, 0.2, 10), Lin(5, 0.0, 15, 0.2, 10)}}},
        {"7.5 15", 54, F::Hipped, 15, 0, "suction", {{"G", -0.8, -1.5}, {"J", -1.0, -1.5}, {"N", -0.3, -0.3}}},
        {"7.5 15", 54, F::Hipped, 15, 0, "pressure", {{"H", 0.2, 0.2}}},
        {"7.5 30", 54, F::Hipped, 30, 0, "suction", {{"F", -0.5, -1.5}, {"M", -0.8, -1.2}}},
        {"7.5 30: F and G differ", 54, F::Hipped, 30, 0, "pressure", {{"F", 0.5, 0.5}, {"G", 0.7, 0.7}}},
        {"7.5 35", 54, F::Hipped, 35, 90, "suction", {{"G", Lin(30, -0.5, 45, -0.0, 35), Lin(30, -1.5, 45, -0.0, 35)}}},
        {"7.5 35", 54, F::Hipped, 35, 90, "pressure", {{"F", Lin(30, 0.5, 45, 0.7, 35), Lin(30, 0.5, 45, 0.7, 35)}}},
        {"7.5 40", 54, F::Hipped, 40, 0, "suction", {{"F", Lin(30, -0.5, 45, -0.0, 40), Lin(30, -1.5, 45, -0.0, 40)}}},
        {"7.5 40", 54, F::Hipped, 40, 0, "pressure", {{"H", Lin(30, 0.4, 45, 0.6, 40), Lin(30, 0.4, 45, 0.6, 40)}}},
        {"7.5 45", 54, F::Hipped, 45, 0, "suction", {{"H", -0.0, -0.0}, {"L", -1.3, -2.0}}},
        {"7.5 45", 54, F::Hipped, 45, 0, "pressure", {{"F", 0.7, 0.7}, {"H", 0.6, 0.6}}},
        // Tables 7.3a and 7.3b, monopitch
        {"7.3a 0, 10", 54, F::Pent, 10, 0, "pressure", {{"F", Lin(5, 0.0, 15, 0.2, 10), Lin(5, 0.0, 15, 0.2, 10)}}},
        {"7.3a 180, 10", 54, F::Pent, 10, 180, "", {{"F", Lin(5, -2.3, 15, -2.5, 10), Lin(5, -2.5, 15, -2.8, 10)}}},
        {"7.3b 30", 54, F::Pent, 30, 90, "", {{"F_up", -2.1, -2.9}, {"F_low", -1.3, -2.0}, {"I", -0.8, -1.2}}},
        // Table 7.2, flat roofs: I prints both signs
        {"7.2 parapet 0.05", 54, F::Flat, 0, 0, "suction", {{"F", -1.4, -2.0}, {"I", -0.2, -0.2}}, 0.05},
        {"7.2 parapet 0.05", 54, F::Flat, 0, 90, "pressure", {{"G", -0.9, -1.6}, {"I", 0.2, 0.2}}, 0.05},
        {"7.2 parapet 0.075", 54, F::Flat, 0, 0, "suction",
         {{"F", Lin(0.05, -1.4, 0.1, -1.2, 0.075), Lin(0.05, -2.0, 0.1, -1.8, 0.075)}}, 0.075},
        {"7.2 curved 0.1", 54, F::Flat, 0, 0, "suction", {{"H", -0.3, -0.3}}, 0, 0.1},
        {"7.2 mansard 75 runs to sharp eaves", 54, F::Flat, 0, 0, "suction",
         {{"F", Lin(60, -1.3, 90, -1.8, 75), Lin(60, -1.9, 90, -2.5, 75)}}, 0, 0, 75},
        // Table 7.1 and NA.1, walls by h/d of each direction (h 10, d 20 at 0, 30 at 90)
        {"7.1 h/d 0.5", 54, F::Wall, 0, 0, "", {{"D", Lin(0.25, 0.7, 1, 0.8, 0.5), 1.0}, {"E", Lin(0.25, -0.3, 1, -0.5, 0.5), Lin(0.25, -0.3, 1, -0.5, 0.5)}}},
        {"7.1 h/d 1/3", 54, F::Wall, 0, 90, "", {{"A", -1.2, -1.4}, {"E", Lin(0.25, -0.3, 1, -0.5, 10.0 / 30.0), Lin(0.25, -0.3, 1, -0.5, 10.0 / 30.0)}}},
        {"7.1 h/d 10 takes the row 5", 54, F::Wall, 0, 0, "", {{"E", -0.7, -0.7}}, 0, 0, 0, 200, 30, 20},
        {"NA.1 h/d 5", 50, F::Wall, 0, 0, "", {{"A", -1.4, -1.7}, {"E", -0.5, -0.7}}, 0, 0, 0, 100, 30, 20},
        {"7.1 under the UK annex", 53, F::Wall, 0, 0, "", {{"A", -1.2, -1.4}}},
        {"7.4a under the Austrian annex", 51, F::Gabled, 35, 0, "suction", {{"F", Lin(30, -0.5, 45, -0.0, 35), Lin(30, -1.5, 45, -0.0, 35)}}},
        // DIN 1055-4:2005, from the component's built-in tables
        {"Tabelle 6, 35", 3, F::Gabled, 35, 0, "suction", {{"F", Lin(30, -0.5, 45, -0.0, 35), Lin(30, -1.5, 45, -0.0, 35)}}},
        {"Tabelle 6, 35", 31, F::Gabled, 35, 0, "pressure", {{"F", 0.7, 0.7}}},
        {"Tabelle 6, 10: F printed once serves both sets", 3, F::Gabled, 10, 0, "pressure", {{"F", -1.3, -2.2}, {"I", 0.2, 0.2}}},
        {"Tabelle 6, 12.5: no pressure at 10 to join the one at 15, one set", 3, F::Gabled, 12.5, 0, "",
         {{"F", Lin(10, -1.3, 15, -0.9, 12.5), Lin(10, -2.2, 15, -2.0, 12.5)}, {"I", Lin(10, -0.5, 15, -0.4, 12.5), Lin(10, -0.5, 15, -0.4, 12.5)}}},
        {"Tabelle 5, 0 at 5: H has no pressure c_pe,1", 3, F::Pent, 5, 0, "pressure", {{"H", 0.2, kNone}}},
        {"Tabelle 7, 40", 3, F::Hipped, 40, 0, "suction", {{"F", Lin(30, -0.5, 45, -0.0, 40), Lin(30, -1.5, 45, -0.0, 40)}}},
        {"Tabelle 4, sharp eaves", 3, F::Flat, 0, 0, "suction", {{"I", -0.6, -0.6}}},
        {"Tabelle 3, h/d 0.5", 3, F::Wall, 0, 0, "", {{"E", Lin(0.25, -0.3, 1, -0.5, 0.5), Lin(0.25, -0.5, 1, -0.5, 0.5)}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.what) + " (Norm " + std::to_string(c.norm) + ", theta " + std::to_string(c.theta) + ")");
        const auto all = PublishedCpOf({c.norm, c.form, c.alpha, c.h, c.b, c.d, c.hpZuH, c.rZuH, c.AlphaTr});
        const PublishedCpDirection* dir = DirOf(all, c.theta);
        ASSERT_NE(dir, nullptr);
        const PublishedCpSet* set = nullptr;
        for (const auto& s : dir->sets)
            if (s.label == c.label) set = &s;
        ASSERT_NE(set, nullptr) << "no set '" << c.label << "' of " << dir->sets.size();
        for (const Want& w : c.cells) {
            const PublishedCpValue* v = nullptr;
            for (const auto& x : set->values)
                if (x.zone == w.zone) v = &x;
            ASSERT_NE(v, nullptr) << w.zone;
            ExpectValue(v->cpe10, w.cpe10, (w.zone + " cpe,10").c_str());
            ExpectValue(v->cpe1, w.cpe1, (w.zone + " cpe,1").c_str());
        }
        for (const Want& w : c.cells)
            if (w.cpe10 == kNone || w.cpe1 == kNone) {
                EXPECT_NE(set->note.find(w.zone), std::string::npos) << set->note;
            }
    }
}

TEST(PublishedCp, SourcesNotesAndWhatIsNotGiven) {
    using F = PublishedForm;
    struct Src {
        int16_t norm;
        PublishedForm form;
        double alpha, theta;
        const char* source;
        bool recommended;
        size_t sets;  // 0: the note says why
    };
    const std::vector<Src> cases = {
        {54, F::Gabled, 20, 0, "EN 1991-1-4:2005, Table 7.4a", false, 2},
        {54, F::Gabled, 60, 0, "EN 1991-1-4:2005, Table 7.4a", false, 1},
        {54, F::Gabled, 2, 0, "EN 1991-1-4:2005, Table 7.4a", false, 0},   // flat roof rules
        {54, F::Gabled, 80, 90, "EN 1991-1-4:2005, Table 7.4b", false, 0}, // beyond the table
        {54, F::Pent, 3, 180, "EN 1991-1-4:2005, Table 7.3a", false, 0},
        {50, F::Wall, 0, 90, "DIN EN 1991-1-4/NA:2010-12, Table NA.1", false, 1},
        {50, F::Hipped, 20, 0, "EN 1991-1-4:2005, Table 7.5 (recommended values)", true, 2},
        {52, F::Flat, 0, 0, "EN 1991-1-4:2005, Table 7.2 (recommended values)", true, 2},
        {3, F::Pent, 20, 90, "DIN 1055-4:2005-03, Tabelle 5", false, 1},
    };
    for (const Src& c : cases) {
        SCOPED_TRACE(c.source);
        const auto all = PublishedCpOf({c.norm, c.form, c.alpha, 10, 30, 20});
        const PublishedCpDirection* dir = DirOf(all, c.theta);
        ASSERT_NE(dir, nullptr);
        EXPECT_EQ(dir->source, c.source);
        EXPECT_EQ(dir->recommended, c.recommended);
        EXPECT_EQ(dir->sets.size(), c.sets);
        if (c.sets == 0) {
            EXPECT_NE(dir->note.find("degrees"), std::string::npos) << dir->note;
        }
    }
    // Standards without coefficient tables, and mansard eaves below the table.
    EXPECT_TRUE(PublishedCpOf({1, F::Gabled, 20, 10, 30, 20}).empty());
    EXPECT_TRUE(PublishedCpOf({78, F::Wall, 0, 10, 30, 20}).empty());
    const auto mansard = PublishedCpOf({54, F::Flat, 0, 10, 30, 20, 0, 0, 20});
    ASSERT_EQ(mansard.size(), 2u);
    EXPECT_TRUE(mansard[0].sets.empty());
    EXPECT_NE(mansard[0].note.find("below"), std::string::npos);
    const auto parapet = PublishedCpOf({54, F::Flat, 0, 10, 30, 20, 0.3});
    EXPECT_NE(parapet[0].note.find("last row 0.1"), std::string::npos) << parapet[0].note;
}

TEST(PublishedCp, BadInputIsErrorFive) {
    using F = PublishedForm;
    const double nan = std::nan("");
    const std::vector<PublishedCpQuery> bad = {
        {54, F::Gabled, 20, 0, 30, 20},      {54, F::Gabled, 20, 10, -1, 20},  {54, F::Gabled, 20, 10, 30, nan},
        {54, F::Gabled, nan, 10, 30, 20},    {54, F::Flat, 0, 10, 30, 20, -0.1}, {54, F::Wall, 0, INFINITY, 30, 20},
        {54, static_cast<F>(9), 0, 10, 30, 20},
    };
    for (const auto& q : bad) EXPECT_EQ(test::ErrorOf([&] { PublishedCpOf(q); }), 5);
}

// Zone plans of Figures 7.5 to 7.8: e = min(b, 2h), edge strips e/10 deep
// with corners e/4 wide, H to e/2, the leeward slope behind the ridge.
TEST(PublishedCp, ZonePlansOfAWideAndANarrowBuilding) {
    using F = PublishedForm;
    using Box = std::vector<std::pair<double, double>>;
    const auto box = [](double x0, double x1, double y0, double y1) { return Box{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}; };
    struct Plan {
        const char* what;
        PublishedCpQuery q;
        double theta, e;
        std::vector<std::pair<std::string, Box>> shapes;  // in order, all of them
    };
    const std::vector<Plan> plans = {
        {"wide flat, e = 2h", {54, F::Flat, 0, 8, 40, 12}, 0, 16,
         {{"F", box(0, 1.6, 0, 4)}, {"G", box(0, 1.6, 4, 36)}, {"F", box(0, 1.6, 36, 40)}, {"H", box(1.6, 8, 0, 40)},
          {"I", box(8, 12, 0, 40)}}},
        {"wide flat across, e = b", {54, F::Flat, 0, 8, 40, 12}, 90, 12,
         {{"F", box(0, 1.2, 0, 3)}, {"G", box(0, 1.2, 3, 9)}, {"F", box(0, 1.2, 9, 12)}, {"H", box(1.2, 6, 0, 12)},
          {"I", box(6, 40, 0, 12)}}},
        {"narrow flat, no I behind e/2", {54, F::Flat, 0, 10, 6, 2}, 0, 6,
         {{"F", box(0, 0.6, 0, 1.5)}, {"G", box(0, 0.6, 1.5, 4.5)}, {"F", box(0, 0.6, 4.5, 6)}, {"H", box(0.6, 2, 0, 6)}}},
        {"wide duopitch, ridge at d/2", {54, F::Gabled, 20, 8, 40, 12}, 0, 16,
         {{"F", box(0, 1.6, 0, 4)}, {"G", box(0, 1.6, 4, 36)}, {"F", box(0, 1.6, 36, 40)}, {"H", box(1.6, 6, 0, 40)},
          {"J", box(6, 7.6, 0, 40)}, {"I", box(7.6, 12, 0, 40)}}},
        {"duopitch along the ridge", {54, F::Gabled, 20, 8, 40, 12}, 90, 12,
         {{"F", box(0, 1.2, 0, 3)}, {"G", box(0, 1.2, 3, 6)}, {"G", box(0, 1.2, 6, 9)}, {"F", box(0, 1.2, 9, 12)},
          {"H", box(1.2, 6, 0, 6)}, {"H", box(1.2, 6, 6, 12)}, {"I", box(6, 40, 0, 12)}}},
        {"monopitch along the slope", {54, F::Pent, 20, 8, 40, 12}, 90, 12,
         {{"F_up", box(0, 1.2, 0, 3)}, {"G", box(0, 1.2, 3, 9)}, {"F_low", box(0, 1.2, 9, 12)},
          {"H", box(1.2, 6, 0, 12)}, {"I", box(6, 40, 0, 12)}}},
        {"narrow walls: A, B, C", {54, F::Wall, 0, 10, 6, 20}, 0, 6,
         {{"D", {{0, 0}, {0, 6}}}, {"E", {{20, 0}, {20, 6}}}, {"A", {{0, 0}, {1.2, 0}}}, {"B", {{1.2, 0}, {6, 0}}},
          {"C", {{6, 0}, {20, 0}}}, {"A", {{0, 6}, {1.2, 6}}}, {"B", {{1.2, 6}, {6, 6}}}, {"C", {{6, 6}, {20, 6}}}}},
        {"deep wind on the short wall: e over d, no C", {54, F::Wall, 0, 10, 6, 20}, 90, 20,
         {{"D", {{0, 0}, {0, 20}}}, {"E", {{6, 0}, {6, 20}}}, {"A", {{0, 0}, {4, 0}}}, {"B", {{4, 0}, {6, 0}}},
          {"A", {{0, 20}, {4, 20}}}, {"B", {{4, 20}, {6, 20}}}}},
    };
    for (const Plan& p : plans) {
        SCOPED_TRACE(p.what);
        const auto all = PublishedCpOf(p.q);
        const PublishedCpDirection* dir = DirOf(all, p.theta);
        ASSERT_NE(dir, nullptr);
        EXPECT_EQ(dir->e, p.e);
        ASSERT_EQ(dir->shapes.size(), p.shapes.size());
        for (size_t i = 0; i < p.shapes.size(); ++i) {
            EXPECT_EQ(dir->shapes[i].zone, p.shapes[i].first) << i;
            EXPECT_EQ(dir->shapes[i].points, p.shapes[i].second) << i << " " << p.shapes[i].first;
        }
    }
    const auto hipped = PublishedCpOf({54, F::Hipped, 20, 8, 40, 12});
    EXPECT_EQ(hipped.at(0).e, 16);
    EXPECT_TRUE(hipped.at(0).shapes.empty());
}

// The store rows of Norm 54 and 50, typed separately, must hold the same
// cells: suction in the main columns, pressure in the second ones.
class PublishedCpStore : public test::IsolatedTest {};

TEST_F(PublishedCpStore, StoreRowsHoldThePrintedCells) {
    using F = PublishedForm;
    struct Route {
        PublishedForm form;
        double theta;
        std::vector<double> keys;
        void (*run)(double theta, double key, CpWindRecord& r);
    };
    const std::vector<double> pitches = {5, 15, 30, 45, 60, 75};
    const std::vector<Route> routes = {
        {F::Gabled, 0, {-45, -30, -15, -5, 5, 15, 30, 45, 60, 75},
         [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, t, k, r); }},
        {F::Gabled, 90, {-45, -30, -15, -5, 5, 15, 30, 45, 60, 75},
         [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, t, k, r); }},
        {F::Hipped, 0, pitches, [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Walmdach_Mdb(54, t, k, r); }},
        {F::Pent, 0, pitches, [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Pultdach_Mdb(54, t, k, r); }},
        {F::Pent, 90, pitches, [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Pultdach_Mdb(54, t, k, r); }},
        {F::Pent, 180, pitches, [](double t, double k, CpWindRecord& r) { Get_Wind_Cp_Pultdach_Mdb(54, t, k, r); }},
    };
    const auto slots = [](const std::string& zone) {
        const std::string name = zone == "F_up" ? "F" : zone == "F_low" ? "Ft" : zone;
        for (const CpZoneSlots& s : kCpZones)
            if (name == s.name) return s;
        ADD_FAILURE() << zone;
        return kCpZones[0];
    };
    for (const Route& route : routes)
        for (double key : route.keys) {
            SCOPED_TRACE("form " + std::to_string(static_cast<int>(route.form)) + " theta " +
                         std::to_string(route.theta) + " alpha " + std::to_string(key));
            CpWindRecord r;
            route.run(route.theta, key, r);
            const auto all = PublishedCpOf({54, route.form, key, 10, 30, 20});
            const PublishedCpDirection* dir = DirOf(all, route.theta);
            ASSERT_NE(dir, nullptr);
            ASSERT_FALSE(dir->sets.empty());
            for (size_t z = 0; z < dir->sets[0].values.size(); ++z) {
                const CpZoneSlots s = slots(dir->sets[0].values[z].zone);
                SCOPED_TRACE(dir->sets[0].values[z].zone);
                const auto& first = dir->sets[0].values[z];
                if (dir->sets.size() == 2) {
                    const auto& second = dir->sets[1].values[z];
                    EXPECT_EQ(r.*s.s10, first.cpe10.value());
                    EXPECT_EQ(r.*s.s1, first.cpe1.value());
                    // A zone printed once stands in both sets and has no second value.
                    const bool once = second.cpe10 == first.cpe10;
                    EXPECT_EQ(r.*s.s10a, once ? 0.0 : second.cpe10.value());
                    EXPECT_EQ(r.*s.s1a, once ? 0.0 : second.cpe1.value());
                } else {
                    const double v = first.cpe10.value(), v1 = first.cpe1.value();
                    const bool inSecond = v > 0.0 && r.*s.s10 == 0.0;
                    EXPECT_EQ(inSecond ? r.*s.s10a : r.*s.s10, v);
                    EXPECT_EQ(inSecond ? r.*s.s1a : r.*s.s1, v1);
                }
            }
        }
    for (double hd : {5.0, 1.0, 0.25}) {
        CpWindRecord r;
        Get_Wind_Cp_Wand_Mdb(50, hd, r);
        const auto all = PublishedCpOf({50, F::Wall, 0, hd * 20, 30, 20});
        for (const auto& v : all.at(0).sets.at(0).values) {
            SCOPED_TRACE(v.zone + " h/d " + std::to_string(hd));
            EXPECT_EQ(r.*slots(v.zone).s10, v.cpe10.value());
            EXPECT_EQ(r.*slots(v.zone).s1, v.cpe1.value());
        }
    }
}

}  // namespace
}  // namespace qvrl
