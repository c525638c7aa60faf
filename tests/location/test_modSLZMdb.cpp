// The older snow and wind zone lists: the file chosen by the norm, the two
// state numberings kept apart, and the lists the zone dialogs show.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/CWindSnow.h"
#include "location/modSLZMdb.h"
#include "location/modWLZMdb.h"
#include "location/test_modAGSMdb_fixture.h"
#include "support/ModuleState.h"

using namespace qvrl;

namespace {

class ZoneLists : public test::TownDbTest {
protected:
    void Slz(const std::string& file, int32_t id, int32_t land, Variant reg, Variant kreis, Variant landkreis,
             Variant gemeinde, const std::string& zone) {
        Insert(file, "slz",
               {{"ID", Variant(id)}, {"Bundesland", Variant(land)}, {"RegBez", reg}, {"Kreis", kreis},
                {"Landkreis", landkreis}, {"Gemeinde", gemeinde}, {"KEY", Variant(id * 10.0)},
                {"Schneelastzone", Variant(zone)}, {"Fußnote(n)", Variant("*")}});
    }
    void Wlz(const std::string& file, int32_t id, int32_t land, int32_t bez, Variant bezirk, int32_t kreisId,
             Variant kreis, const std::string& gemeinde, const std::string& zone) {
        Insert(file, "wlz",
               {{"ID", Variant(id)}, {"LandID", Variant(land)}, {"BezID", Variant(int16_t(bez))}, {"Bezirk", bezirk},
                {"KreisID", Variant(int16_t(kreisId))}, {"Kreis", kreis}, {"Gemeinde", Variant(gemeinde)},
                {"WLZ", Variant(zone)}});
    }
    static ZoneStateRec StateOf(const std::vector<ZoneStateRec>& states, const std::string& code) {
        for (const auto& s : states)
            if (s.Code == code) return s;
        return {};
    }
};

TEST_F(ZoneLists, TheTwoNumberingsStayApart) {
    std::vector<ZoneStateRec> slz, wlz;
    ReadSlzStates(slz);
    ReadWlzStates(wlz);
    ASSERT_EQ(slz.size(), 17u);
    ASSERT_EQ(wlz.size(), 17u);
    EXPECT_EQ(slz[0], ZoneStateRec{});
    struct Row {
        size_t order;
        const char* name;
        const char* slzCode;
        int16_t slzNumber;
        const char* wlzCode;
        int16_t wlzNumber;
    };
    for (const Row& r : {Row{9, "Niedersachsen", "NI", 3, "NS", 4}, Row{14, "Sachsen-Anhalt", "ST", 15, "SA", 8},
                         Row{1, "Baden-Württemberg", "BW", 8, "BW", 15}, Row{16, "Thüringen", "TH", 16, "TH", 11}}) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(slz[r.order].Name, r.name);
        EXPECT_EQ(wlz[r.order].Name, r.name);
        EXPECT_EQ(slz[r.order].Code, r.slzCode);
        EXPECT_EQ(slz[r.order].Number, r.slzNumber);
        EXPECT_EQ(wlz[r.order].Code, r.wlzCode);
        EXPECT_EQ(wlz[r.order].Number, r.wlzNumber);
    }
}

TEST_F(ZoneLists, NormSwitchingReopensTheRightFile) {
    Slz("qvrlslz.mdb", 1, 3, Variant(int16_t(0)), Variant(int16_t(1)), Variant("Aus Norm 31"), Variant("A"), "1");
    Slz("qvrlslz_dibt.mdb", 1, 3, Variant(int16_t(0)), Variant(int16_t(1)), Variant("Aus dibt"), Variant("A"), "2");
    std::vector<ZoneStateRec> states;
    ReadSlzStates(states);
    const ZoneStateRec ni = StateOf(states, "NI");
    std::vector<SlzCountyRec> counties;

    struct Step {
        int16_t norm;
        const char* county;
        int16_t stored;  // the code kept after the read
    };
    const std::vector<Step> steps = {{31, "Aus Norm 31", 31}, {3, "Aus dibt", 3},  {213, "Aus dibt", 213},
                                     {31, "Aus Norm 31", 31}, {99, "Aus dibt", 3}, {0, "Aus dibt", 3}};
    for (const Step& s : steps) {
        SCOPED_TRACE(s.norm);
        SetSlzNorm(s.norm);
        ReadSlzCounties(ni, counties);
        ASSERT_EQ(counties.size(), 2u);
        EXPECT_EQ(counties[1].Landkreis, s.county);
        EXPECT_EQ(State().SlzNorm, s.stored);
    }
    // The same code keeps the connection; another drops it.
    const auto db = State().SlzDb;
    SetSlzNorm(3);
    EXPECT_EQ(State().SlzDb, db);
    SetSlzNorm(50);
    EXPECT_EQ(State().SlzDb, nullptr);

    // The wind list, selected by the wind zone lists of CWindSnow.
    Wlz("qvrlwlz.mdb", 7, 4, 1, Variant("Fünf Zonen"), 1, Variant("K"), "G", "5");
    Wlz("qvrlwlz_dibt.mdb", 7, 4, 1, Variant("Vier Zonen"), 1, Variant("K"), "G", "4");
    std::vector<ZoneStateRec> wstates;
    ReadWlzStates(wstates);
    std::vector<WlzRegionRec> regions;
    std::vector<std::string> names;
    std::vector<int16_t> index;
    CWindSnow ws;
    ws.WindZoneNames2005_T2963(names, index);
    EXPECT_EQ(State().WlzNorm, 31);
    ReadWlzRegions(StateOf(wstates, "NS"), regions);
    ASSERT_EQ(regions.size(), 2u);
    EXPECT_EQ(regions[1].Bezirk, "Fünf Zonen");
    ws.WindZoneNames2005(names, index);
    ReadWlzRegions(StateOf(wstates, "NS"), regions);
    ASSERT_EQ(regions.size(), 2u);
    EXPECT_EQ(regions[1].Bezirk, "Vier Zonen");
}

TEST_F(ZoneLists, SnowCountiesAndTowns) {
    const std::string f = "qvrlslz_dibt.mdb";
    Slz(f, 1, 8, Variant(int16_t(1)), Variant(int16_t(15)), Variant(""), Variant("Ohne Kreis"), "1");
    Slz(f, 2, 8, Variant(int16_t(1)), Variant(int16_t(15)), Variant("Esslingen"), Variant("Wendlingen"), "1a");
    Slz(f, 3, 8, Variant(int16_t(1)), Variant(int16_t(15)), Variant("Esslingen"), Variant("Aichwald"), "2");
    Slz(f, 4, 8, Variant(int16_t(2)), Variant(int16_t(20)), Variant("Karlsruhe"), Variant::Null(), "2");
    std::vector<ZoneStateRec> states;
    ReadSlzStates(states);
    const ZoneStateRec bw = StateOf(states, "BW");
    std::vector<SlzCountyRec> counties;
    ReadSlzCounties(bw, counties);
    // An empty first name adds nothing and nothing is renamed.
    ASSERT_EQ(counties.size(), 3u);
    EXPECT_EQ(counties[1].Landkreis, "Esslingen");
    EXPECT_EQ(counties[1].Kreis, 15);
    EXPECT_EQ(counties[1].Code, "BW");
    EXPECT_EQ(counties[2].Landkreis, "Karlsruhe");
    EXPECT_EQ(counties[2].RegBez, 2);

    std::vector<SlzTownRec> towns;
    ReadSlzTowns(bw, counties[1], towns);
    ASSERT_EQ(towns.size(), 4u);
    EXPECT_EQ(towns[1].Gemeinde, "Aichwald");
    EXPECT_EQ(towns[1].KEY, 30.0);
    EXPECT_EQ(towns[1].Schneelastzone, "2");
    EXPECT_EQ(towns[1].Fussnoten, "*");
    EXPECT_EQ(towns[2].Gemeinde, "Ohne Kreis");
    EXPECT_EQ(towns[2].Landkreis, "");

    // A Null leaves its field blank and the walk goes on.
    ReadSlzTowns(bw, counties[2], towns);
    ASSERT_EQ(towns.size(), 2u);
    EXPECT_EQ(towns[1].Gemeinde, "");
    EXPECT_EQ(towns[1].Schneelastzone, "2");
    EXPECT_EQ(towns[1].ID, 4);
    // Without a county: the whole state.
    ReadSlzTowns(bw, SlzCountyRec{}, towns);
    EXPECT_EQ(towns.size(), 5u);
    EXPECT_EQ(towns[1].Name, bw.Name);
}

TEST_F(ZoneLists, WindRegionsAndCountiesNameTheirBlanks) {
    const std::string f = "qvrlwlz_dibt.mdb";
    // Hessen (wlz number 10): one region without a name, alone.
    Wlz(f, 1, 10, 0, Variant(""), 0, Variant("Kassel"), "Kassel", "2");
    // Bayern (16): a blank region among named ones.
    Wlz(f, 2, 16, 0, Variant::Null(), 1, Variant(""), "X", "1");
    Wlz(f, 3, 16, 1, Variant("Oberbayern"), 2, Variant("Rosenheim"), "Rosenheim", "2");
    Wlz(f, 4, 16, 1, Variant("Oberbayern"), 3, Variant("Traunstein"), "Ruhpolding", "2");
    std::vector<ZoneStateRec> states;
    ReadWlzStates(states);
    std::vector<WlzRegionRec> regions;
    ReadWlzRegions(StateOf(states, "HE"), regions);
    ASSERT_EQ(regions.size(), 2u);
    EXPECT_EQ(regions[1].Bezirk, "alle");
    ReadWlzRegions(StateOf(states, "BY"), regions);
    ASSERT_EQ(regions.size(), 3u);
    EXPECT_EQ(regions[1].Bezirk, "restliche");
    EXPECT_EQ(regions[2].Bezirk, "Oberbayern");

    std::vector<WlzCountyRec> counties;
    ReadWlzCounties(StateOf(states, "BY"), WlzRegionRec{}, counties);
    ASSERT_EQ(counties.size(), 4u);
    EXPECT_EQ(counties[1].Kreis, "restliche");
    ReadWlzCounties(StateOf(states, "BY"), regions[2], counties);
    ASSERT_EQ(counties.size(), 3u);
    EXPECT_EQ(counties[2].Kreis, "Traunstein");
    EXPECT_EQ(counties[2].Code, "BY");

    std::vector<WlzTownRec> towns;
    ReadWlzTowns(StateOf(states, "BY"), regions[2], counties[2], towns);
    ASSERT_EQ(towns.size(), 2u);
    EXPECT_EQ(towns[1].Gemeinde, "Ruhpolding");
    EXPECT_EQ(towns[1].KEY, 4.0);
    EXPECT_EQ(towns[1].WLZ, "2");
    // County alone: its own state number and region.
    ReadWlzTowns(ZoneStateRec{}, WlzRegionRec{}, counties[1], towns);
    ASSERT_EQ(towns.size(), 2u);
    EXPECT_EQ(towns[1].Gemeinde, "Rosenheim");
    ReadWlzTowns(StateOf(states, "BY"), WlzRegionRec{}, WlzCountyRec{}, towns);
    EXPECT_EQ(towns.size(), 4u);
}

TEST_F(ZoneLists, MissingFileGivesEmptyLists) {
    std::filesystem::remove(program_ / "qvrlslz_dibt.mdb");
    std::vector<ZoneStateRec> states;
    ReadSlzStates(states);
    std::vector<SlzCountyRec> counties;
    ReadSlzCounties(states[1], counties);
    EXPECT_EQ(counties.size(), 1u);
    std::vector<SlzTownRec> towns;
    ReadSlzTowns(states[1], SlzCountyRec{}, towns);
    EXPECT_EQ(towns.size(), 1u);
}

}  // namespace
