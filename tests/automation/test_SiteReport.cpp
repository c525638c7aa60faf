#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "TestEnv.h"
#include "automation/SiteReport.h"
#include "cp/modWindCp.h"
#include "cp/modWindCpMdb.h"
#include "location/test_modAGSMdb_fixture.h"
#include "rules/modSnow.h"
#include "rules/modSnowEN.h"
#include "rules/modWind.h"
#include "rules/modWindEN.h"

using namespace qvrl;

namespace {

class SiteReport : public test::IsolatedTest {};

// Altitude and building height differ, and every zone and category code is
// one a swapped argument would not hit, so a miswired argument shows.
SiteInput DinSite() {
    SiteInput in;
    in.Norm = 3, in.SnowZone = 21, in.WindZone = 3, in.BuildingCategory = 6;
    in.TerrainHeightInM = 437.0, in.BuildingHeightInM = 12.0, in.Form = SiteRoofForm::Gabled, in.Alpha = 20.0;
    return in;
}

SiteInput GermanAnnexSite() {
    SiteInput in = DinSite();
    in.Norm = 50, in.SnowZone = 3, in.WindZone = 2, in.BuildingCategory = 3, in.Form = SiteRoofForm::Pent;
    in.UpwindSlope_Phi = 0.1, in.OrographicLocationFac_s = 0.4, in.cDir = 0.9, in.cSeason = 0.95;
    return in;
}

SiteInput UkSite(int16_t category) {
    SiteInput in = GermanAnnexSite();
    in.Norm = 53, in.SnowZone = 101, in.BuildingCategory = category, in.BasicWindVelocity = 22.0;
    in.WindZone.reset(), in.UpwindSlope_Phi.reset(), in.OrographicLocationFac_s.reset();
    in.cDir.reset(), in.cSeason.reset();
    return in;
}

struct Expected {
    double sk, mue1, mue2, qp;
    std::vector<CpWindRecord> cp;
};

// The same rules called directly with the arguments they must receive: equal
// bits prove the hand-over, so the comparisons are exact.
Expected DirectDin() {
    Expected e{};
    e.sk = StandardSnowLoad_DIN1055_7_2005(21, 437.0);
    SnowShapeDIN(20.0, e.mue1, e.mue2);
    e.qp = WindPressure_DIN1055_4_2005(3, 6, 12.0, 437.0);
    for (double theta : {0.0, 90.0}) Get_Wind_Cp_Satteldach(theta, 20.0, e.cp.emplace_back());
    return e;
}

Expected DirectGermanAnnex() {
    Expected e{};
    e.sk = StandardSnowLoad_EN_1991_1_3(437.0, 50, 0, 3.0);
    double mue3 = 0.0, qb = 0.0, vb = 0.0, inTown = 0.0;
    SnowShapeEN(50, 20.0, false, 0.0, e.mue1, e.mue2, mue3);
    WindReference(2, qb, vb);
    e.qp = WindPressure_EN_1991_1_4(50, 3, 12.0, qb, vb, 0.1, 0.4, 0.9, 0.95, 0.0, inTown);
    InitCpeMdb();
    for (double theta : {0.0, 90.0, 180.0}) Get_Wind_Cp_Pultdach_Mdb(50, theta, 20.0, e.cp.emplace_back());
    return e;
}

TEST_F(SiteReport, EachValueComesFromItsRuleWithTheSiteArguments) {
    const struct {
        const char* name;
        SiteInput in;
        std::function<Expected()> direct;
        SiteCpRoute route;
    } cases[] = {
        {"DIN 1055 2005", DinSite(), DirectDin, SiteCpRoute::BuiltIn},
        {"DIN EN with the German annex", GermanAnnexSite(), DirectGermanAnnex, SiteCpRoute::Store},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const SiteResult r = ComputeSite(c.in);
        const Expected e = c.direct();
        EXPECT_EQ(r.sk, e.sk);
        ASSERT_EQ(r.roofSnow.size(), 2u);
        EXPECT_EQ(r.roofSnow[0].mue, e.mue1);
        EXPECT_EQ(r.roofSnow[1].mue, e.mue2);
        EXPECT_EQ(r.roofSnow[0].s, e.mue1 * e.sk);
        EXPECT_EQ(r.roofSnow[1].s, e.mue2 * e.sk);
        EXPECT_EQ(r.qp, e.qp);
        EXPECT_TRUE(r.qpAvailable);
        EXPECT_EQ(r.cpRoute, c.route);
        ASSERT_EQ(r.cp.size(), e.cp.size());
        for (size_t i = 0; i < e.cp.size(); ++i) {
            EXPECT_EQ(r.cp[i].rec, e.cp[i]);
            for (const SiteCpZone& z : r.cp[i].zones) {
                EXPECT_EQ(z.we10, e.qp * z.cpe10) << z.zone;
                EXPECT_EQ(z.we1a, e.qp * z.cpe1a) << z.zone;
            }
        }
    }
    const SiteResult de = ComputeSite(GermanAnnexSite());  // zone 2 of the annex: 0.39 kN/m², 25 m/s
    EXPECT_EQ(de.qb, 0.39);
    EXPECT_EQ(de.vb, 25.0);
}

// A coefficient file in the program folder stands in for the store: one
// row for the German annex, one for another Norm.
TEST_F(SiteReport, StoreRouteAsksWithTheAnnexNormAndSaysWhenItHasNothing) {
    const auto program = test::FreshFolder("program");
    auto line = [](int norm, int theta, double f10, double f10a) {
        std::vector<std::string> f(kCpeTextFields, "0");
        f[1] = std::to_string(norm), f[2] = "4", f[4] = "'gabled'", f[5] = std::to_string(theta), f[6] = "30";
        f[30] = DoubleToText(f10), f[31] = DoubleToText(f10a);
        std::string s;
        for (const auto& x : f) s += x + ";";
        return s + "\n";
    };
    test::WriteFile(program / "qvrlcpe.txt", line(50, 0, -0.9, 0.2) + line(54, 90, -1.4, 0.0));
    setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);

    SiteInput in = GermanAnnexSite();
    in.Form = SiteRoofForm::Gabled;
    const SiteResult r = ComputeSite(in);
    ASSERT_EQ(r.cp.size(), 2u);
    EXPECT_EQ(r.cp[0].status, SiteCpStatus::Ok);
    EXPECT_EQ(r.cp[0].rec.Norm, 50);
    ASSERT_FALSE(r.cp[0].zones.empty());
    const SiteCpZone& f = r.cp[0].zones[0];
    EXPECT_EQ(f.zone, "F");
    EXPECT_EQ(f.cpe10, -0.9);
    EXPECT_TRUE(f.hasSecond);
    EXPECT_EQ(f.we10a, r.qp * 0.2);
    EXPECT_EQ(r.cp[1].status, SiteCpStatus::NoneForStandard);  // the 90° row is Norm 54's
    EXPECT_TRUE(r.cp[1].zones.empty());
}

TEST_F(SiteReport, RuleSentinelsAndGapsGiveNoValueInsteadOfNumbers) {
    SiteInput high = DinSite();
    high.TerrainHeightInM = 1600.0;  // above both DIN ranges: 999.0 from each rule
    const SiteResult h = ComputeSite(high);
    EXPECT_FALSE(h.skAvailable);
    EXPECT_FALSE(h.qpAvailable);
    EXPECT_EQ(h.roofSnow[0].s, 0.0);
    EXPECT_EQ(h.cp[0].zones[0].we10, 0.0);

    SiteInput steep = DinSite();
    steep.Alpha = 80.0;  // the built-in gabled tables end at 75°
    for (const SiteCpDirection& d : ComputeSite(steep).cp) {
        EXPECT_EQ(d.status, SiteCpStatus::OutsideTable);
        EXPECT_TRUE(d.zones.empty());
    }

    // Between two built-in pent rows Ft reads 0 in every slot: no coefficient.
    SiteInput pent = DinSite();
    pent.Form = SiteRoofForm::Pent, pent.Alpha = 12.0;
    const SiteCpDirection along = ComputeSite(pent).cp[1];
    ASSERT_EQ(along.Theta, 90.0);
    ASSERT_EQ(along.zones.back().zone, "Ft");
    EXPECT_FALSE(along.zones.back().hasValue);
    EXPECT_TRUE(along.zones.front().hasValue);
    pent.Alpha = 15.0;  // on a row it has one
    EXPECT_TRUE(ComputeSite(pent).cp[1].zones.back().hasValue);

    SiteInput old = DinSite();  // 1975: no roof rule, wind by height alone
    old.Norm = 1, old.SnowZone = 4, old.WindZone.reset(), old.BuildingCategory.reset();
    const SiteResult o = ComputeSite(old);
    EXPECT_EQ(o.sk, StandardSnowLoad_DIN1055_5_1975(4, 437.0));
    EXPECT_EQ(o.qp, WindPressure_DIN1055_4_1986(12.0));
    EXPECT_FALSE(o.roofShapeAvailable);
    EXPECT_TRUE(o.roofSnow.empty());
}

TEST_F(SiteReport, BadOrMissingInputNamesItsOption) {
    using Edit = std::function<void(SiteInput&)>;
    const struct {
        const char* option;
        SiteInput base;
        Edit edit;
    } cases[] = {
        {"norm", DinSite(), [](SiteInput& i) { i.Norm = 2; }},
        {"snow-zone", DinSite(), [](SiteInput& i) { i.SnowZone = 4; }},
        {"snow-zone", DinSite(), [](SiteInput& i) { i.SnowZone.reset(), i.SnowZoneText = "4a"; }},
        {"snow-zone", GermanAnnexSite(), [](SiteInput& i) { i.SnowZone = 101; }},  // an Austrian and British code
        {"wind-zone", DinSite(), [](SiteInput& i) { i.WindZone = 5; }},            // five zones only under 31
        {"category", DinSite(), [](SiteInput& i) { i.BuildingCategory = 0; }},
        {"height", DinSite(), [](SiteInput& i) { i.BuildingHeightInM = -3.0; }},
        {"altitude", DinSite(), [](SiteInput& i) { i.TerrainHeightInM.reset(); }},
        {"pitch", DinSite(), [](SiteInput& i) { i.Alpha = 90.5; }},
        {"pitch", DinSite(), [](SiteInput& i) { i.Alpha = -0.5; }},
        {"pitch", DinSite(), [](SiteInput& i) { i.Alpha.reset(); }},
        {"h-d", DinSite(), [](SiteInput& i) { i.Form = SiteRoofForm::Wall, i.Alpha.reset(); }},
        {"phi", DinSite(), [](SiteInput& i) { i.UpwindSlope_Phi = 0.1; }},
        {"region", GermanAnnexSite(), [](SiteInput& i) { i.Norm = 54, i.WindZone.reset(), i.BasicWindVelocity = 25; }},
        {"region", GermanAnnexSite(), [](SiteInput& i) { i.Norm = 51, i.CtrlRegion = 3; }},
        {"category", GermanAnnexSite(), [](SiteInput& i) { i.Norm = 51, i.SnowZone = 102, i.BuildingCategory = 1; }},
        {"qb", GermanAnnexSite(), [](SiteInput& i) { i.Norm = 52, i.WindZone.reset(); }},
        {"wind-zone", GermanAnnexSite(), [](SiteInput& i) { i.BasicWindPressure = 0.5; }},
        {"cdir", GermanAnnexSite(), [](SiteInput& i) { i.cDir = 0.0; }},
        {"s", GermanAnnexSite(), [](SiteInput& i) { i.OrographicLocationFac_s.reset(); }},
        {"dist-shore", GermanAnnexSite(), [](SiteInput& i) { i.DistToShore = 100.0; }},
        // The UK annex: the shore from category I on, inside town for III and IV.
        {"dist-shore", UkSite(1), [](SiteInput&) {}},
        {"dist-town", UkSite(3), [](SiteInput& i) { i.DistToShore = 3000.0; }},
        {"qb", UkSite(0), [](SiteInput& i) { i.BasicWindPressure = 0.4; }},
        {"cdir", UkSite(0), [](SiteInput& i) { i.cDir = 0.9; }},
        {"ce", DinSite(), [](SiteInput& i) { i.Ce = 1.0; }},  // DIN 1055-5 has none, not even the default
        {"ce", GermanAnnexSite(), [](SiteInput& i) { i.Ce = 0.0; }},
        {"ct", GermanAnnexSite(), [](SiteInput& i) { i.Ct = 1.01; }},
        {"profile", DinSite(), [](SiteInput& i) { i.WindProfile = GermanWindProfile::Inland; }},  // and a category
        {"profile", DinSite(),
         [](SiteInput& i) { i.BuildingCategory.reset(), i.WindZone = 1, i.WindProfile = GermanWindProfile::Coast; }},
        {"profile", UkSite(0), [](SiteInput& i) { i.BuildingCategory.reset(), i.WindProfile = GermanWindProfile::Coast; }},
        {"width", DinSite(), [](SiteInput& i) { i.PlanWidth = 0.0; }},
        {"h-d", DinSite(), [](SiteInput& i) { i.Form = SiteRoofForm::Wall, i.Alpha.reset(), i.HzuD = 1.0, i.PlanDepth = 10.0; }},
    };
    for (const auto& c : cases) {
        SiteInput in = c.base;
        c.edit(in);
        try {
            ComputeSite(in);
            ADD_FAILURE() << "accepted, expected a complaint about --" << c.option;
        } catch (const SiteInputError& e) {
            EXPECT_EQ(e.option(), c.option) << e.what();
            EXPECT_NE(std::string(e.what()).find(std::string("--") + c.option), std::string::npos) << e.what();
        }
    }
}

TEST_F(SiteReport, ShapeCoefficientsChangeAtTheirPitchBoundaries) {
    const struct {
        int16_t Norm;
        double pitch, mue1, mue2;
    } cases[] = {
        {3, 0.0, 0.8, 0.8},  {3, 30.0, 0.8, 1.6},  {3, 45.0, 0.4, 1.6},  {3, 60.0, 0.0, 1.6},
        {3, 90.0, 0.0, 1.6}, {53, 15.0, 0.8, 1.2}, {53, 30.0, 1.2, 1.6}, {53, 61.0, 0.0, 1.6},
    };
    for (const auto& c : cases) {
        SiteInput in = c.Norm == 3 ? DinSite() : UkSite(0);
        if (c.Norm == 53) in.SnowZone = 1, in.SnowZoneText = "1";  // no code 1 here: the text names 101
        in.Alpha = c.pitch;
        const SiteResult r = ComputeSite(in);
        // The pitch formulas land one unit in the last place beside the decimal literal.
        EXPECT_NEAR(r.roofSnow[0].mue, c.mue1, 1e-15) << c.Norm << " at " << c.pitch;
        EXPECT_NEAR(r.roofSnow[1].mue, c.mue2, 1e-15) << c.Norm << " at " << c.pitch;
    }
    // Just past 30° μ1 leaves its plateau.
    SiteInput past = DinSite();
    past.Alpha = 30.001;
    EXPECT_LT(ComputeSite(past).roofSnow[0].mue, 0.8);
}

// The findings against the printed formulas, each checked by hand; the
// member's value for the same input stands in a note beside it.
TEST_F(SiteReport, PublishedValuesAndTheMemberThatDiffers) {
    SiteInput en = GermanAnnexSite();
    en.Norm = 54, en.CtrlRegion = 6, en.SnowZone = 2, en.TerrainHeightInM = 400.0, en.WindZone.reset();
    en.BasicWindVelocity = 25.0, en.BuildingCategory = 2, en.cDir.reset(), en.cSeason.reset();
    SiteInput de = GermanAnnexSite();
    de.SnowZone = 2, de.BuildingCategory = 2, de.BuildingHeightInM = 10.0, de.TerrainHeightInM = 400.0;
    de.UpwindSlope_Phi.reset(), de.OrographicLocationFac_s.reset(), de.cDir.reset(), de.cSeason.reset();
    SiteInput deAtSea = de;
    deAtSea.TerrainHeightInM = 0.0;
    SiteInput uk = UkSite(0);
    uk.SnowZone = 101, uk.TerrainHeightInM = 100.0;
    SiteInput at = GermanAnnexSite();
    at.Norm = 51, at.SnowZone = 102, at.WindZone.reset(), at.BasicWindPressure = 0.5, at.BuildingCategory = 2;
    at.UpwindSlope_Phi.reset(), at.OrographicLocationFac_s.reset();
    const struct {
        const char* name;
        SiteInput in;
        double sk;
        std::optional<double> qp;
        bool skNote, qpNote, skRule;
    } cases[] = {
        // Table C.1, Central West: 0.164·2 − 0.082 + 400/966
        {"EN region 6", en, 0.660, std::nullopt, true, false, false},
        // German annex zone 2: 0.25 + 1.91·(540/760)²; 2.1·0.39·(10/10)^0.24 at z 10 m
        {"DE zone 2 at 400 m", de, 1.214, 0.819, true, true, false},
        {"DE zone 2 at sea level: minimum", deAtSea, 0.85, 0.819, true, true, false},
        // UK annex: [0.15 + (0.1 + 0.05)] + 0/525
        {"UK zone 1 at 100 m", uk, 0.300, std::nullopt, true, false, false},
        // DIN 1055-5:2005 zone 2a: the member has the printed formula, no note
        {"DIN 1055 zone 2a", DinSite(), 1.25 * (0.25 + 1.91 * std::pow(577.0 / 760.0, 2)), std::nullopt, false,
         false, false},
        {"Austria: the member's rule, named", at, -1.0, std::nullopt, false, false, true},
    };
    for (const auto& c : cases) {
        const SiteResult r = ComputeSite(c.in);
        auto note = [&](const char* topic) -> const SiteNote* {
            for (const SiteNote& n : r.notes)
                if (n.topic == topic) return &n;
            return nullptr;
        };
        ASSERT_TRUE(r.groundSnow.value) << c.name;
        if (c.sk >= 0.0) {  // hand figures: 3 decimals
            EXPECT_NEAR(*r.groundSnow.value, c.sk, 0.0005) << c.name;
        }
        if (c.qp) {
            EXPECT_NEAR(*r.peakPressure.value, *c.qp, 0.0005) << c.name;
        }
        const SiteNote* sn = note("ground_snow");
        EXPECT_EQ(sn != nullptr, c.skNote || c.skRule) << c.name;
        if (sn) {
            EXPECT_EQ(sn->member, "CWindSnow.StandardSnowLoad_EN_1991_1_3") << c.name;
            EXPECT_EQ(sn->memberValue, r.sk) << c.name;  // the member's own bits
            EXPECT_EQ(sn->ruleUsed, c.skRule) << c.name;
        }
        if (c.skRule) {
            EXPECT_EQ(*r.groundSnow.value, r.sk) << c.name;
        }
        const SiteNote* qn = note("peak_velocity_pressure");
        if (c.qpNote) {
            ASSERT_NE(qn, nullptr) << c.name;
            EXPECT_EQ(qn->memberValue, r.qp) << c.name;
            EXPECT_NE(*qn->memberValue, *r.peakPressure.value) << c.name;
        }
    }
}

TEST_F(SiteReport, SnowArrangementsOfTheRoofForm) {
    SiteInput in = GermanAnnexSite();
    in.Form = SiteRoofForm::Gabled, in.Alpha = 45.0, in.Ce = 0.8, in.Ct = 0.9;
    const SiteResult r = ComputeSite(in);
    const double sk = *r.groundSnow.value, mu = 0.8 * 15.0 / 30.0;
    ASSERT_EQ(*r.mue1->value, mu);
    // s = μ·Ce·Ct·sk from the left: another order moves the last bit here.
    const double full = mu * 0.8 * 0.9 * sk, half = 0.5 * mu * 0.8 * 0.9 * sk;
    const struct {
        const char* name;
        double left, right;
    } expected[] = {{"undrifted", full, full}, {"drifted_left", half, full}, {"drifted_right", full, half}};
    ASSERT_EQ(r.arrangements.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
        const SiteSnowArrangement& a = r.arrangements[i];
        EXPECT_EQ(a.name, expected[i].name);
        ASSERT_EQ(a.parts.size(), 2u);
        EXPECT_EQ(*a.parts[0].s, expected[i].left) << a.name;
        EXPECT_EQ(*a.parts[1].s, expected[i].right) << a.name;
        EXPECT_NE(a.source.find("Figure 5.3"), std::string::npos) << a.source;
    }
    // A monopitch roof has the one arrangement; a wall none.
    in.Form = SiteRoofForm::Pent;
    const SiteResult p = ComputeSite(in);
    ASSERT_EQ(p.arrangements.size(), 1u);
    EXPECT_EQ(p.arrangements[0].parts[0].part, "whole");
    in.Form = SiteRoofForm::Wall, in.Alpha.reset(), in.HzuD = 1.0;
    EXPECT_TRUE(ComputeSite(in).arrangements.empty());
}

TEST_F(SiteReport, ZoneGeometryOnlyWithThePlan) {
    SiteInput in = DinSite();
    const SiteResult without = ComputeSite(in);
    ASSERT_FALSE(without.publishedCp.empty());
    for (const SitePublishedCp& p : without.publishedCp) {
        EXPECT_EQ(p.dir.e, 0.0);
        EXPECT_TRUE(p.dir.shapes.empty());
    }
    in.PlanWidth = 30.0, in.PlanDepth = 10.0;
    const SiteResult with = ComputeSite(in);
    ASSERT_EQ(with.publishedCp.size(), without.publishedCp.size());
    EXPECT_EQ(with.publishedCp[0].dir.e, 24.0);  // min(b, 2h) at θ 0
    EXPECT_EQ(with.publishedCp[1].dir.e, 10.0);  // θ 90 sees b = 10
    EXPECT_FALSE(with.publishedCp[0].dir.shapes.empty());
    // w_e = q_p·c_pe, value by value.
    const PublishedCpValue& v = with.publishedCp[1].dir.sets[0].values[0];
    EXPECT_EQ(*with.publishedCp[1].we[0][0].we10, *with.peakPressure.value * *v.cpe10);
}

class SiteTown : public test::TownDbTest {};

TEST_F(SiteTown, TownFillsWhatIsNotGivenAndAsksForWhatItLacks) {
    AddTown(Town(1, "05315000", "Köln", "50667", "2", "2a"));
    AddTown(Town(2, "05316000", "Ohnezone", "50999", "1", ""));
    Insert("qvrl.mdb", "slzwlz1",
           {{"ID", Variant(1)},
            {"Land_ID", Variant(50)},
            {"AGS", Variant("09162000")},
            {"Gemeinde", Variant("München")},
            {"SZ", Variant("2")},
            {"qb", Variant(0.32)},
            {"vb", Variant(22.5)},
            {"hNN", Variant(519.0)}});
    SiteInput din = DinSite();
    din.SnowZone.reset(), din.WindZone.reset(), din.AGS = "05315000";
    const SiteResult k = ComputeSite(din);
    EXPECT_EQ(k.townName, "Köln");
    EXPECT_EQ(k.input.SnowZone, 21);
    EXPECT_EQ(k.input.WindZone, 2);
    din.WindZone = 4;  // a given zone wins over the town's
    EXPECT_EQ(ComputeSite(din).input.WindZone, 4);

    SiteInput en = GermanAnnexSite();
    en.SnowZone.reset(), en.WindZone.reset(), en.TerrainHeightInM.reset(), en.AGS = "09162000";
    const SiteResult m = ComputeSite(en);
    EXPECT_EQ(m.input.SnowZone, 2);
    EXPECT_EQ(m.input.TerrainHeightInM, 519.0);
    EXPECT_EQ(m.qb, 0.32);
    EXPECT_EQ(m.vb, 22.5);

    for (const char* ags : {"05316000", "05399999"}) {
        din.AGS = ags;
        try {
            ComputeSite(din);
            ADD_FAILURE() << ags << " accepted";
        } catch (const SiteInputError& e) {
            const bool noZone = ags == std::string("05316000");
            EXPECT_EQ(e.option(), noZone ? "snow-zone" : "town") << e.what();
            // Where the zones come from: the option, and the import that fills the town table.
            if (noZone) {
                EXPECT_NE(std::string(e.what()).find("qvroofload db import zones"), std::string::npos);
            }
        }
    }
}

}  // namespace
