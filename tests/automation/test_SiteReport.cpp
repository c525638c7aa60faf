#include <gtest/gtest.h>

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
            EXPECT_EQ(e.option(), ags == std::string("05316000") ? "snow-zone" : "town") << e.what();
        }
    }
}

}  // namespace
