// The public municipality object: each getter is one look-up of the German
// table, reached directly and by name as hosts reach it.
#include <gtest/gtest.h>

#include <string>

#include "automation/CAGS.h"
#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"
#include "location/modAGSMdb.h"
#include "location/test_modAGSMdb_fixture.h"

using namespace qvrl;

namespace {

class CAGSTest : public test::TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        auto row = Town(1, "09162000", "München", "80331", "1", "1a", "München, Landeshauptstadt", "Oberbayern",
                        "Bayern");
        row[13].second = Variant("WZ-Bemerkung");
        row[14].second = Variant("SZ-Bemerkung");
        AddTown(row);
        AddTown(Town(2, "05314000", "Bonn", "53111", "1", "", "Bonn", "Köln", "Nordrhein-Westfalen"));
        // The Eurocode table knows figures for the same key; CAGS never reads them.
        Insert("qvrl.mdb", "slzwlz1",
               {{"ID", Variant(1)}, {"Land_ID", Variant(50)}, {"AGS", Variant("09162000")}, {"Gemeinde", Variant("M")},
                {"SZ", Variant("1a")}, {"sk", Variant(0.85)}, {"qb", Variant(0.32)}, {"hNN", Variant(519.0)}});
    }
};

TEST_F(CAGSTest, GettersReadOneFieldEach) {
    const CAGS a;
    using G = std::string (CAGS::*)(const std::string&) const;
    struct Case {
        const char* member;
        G get;
        const char* munich;
    };
    const Case cases[] = {
        {"GetTownName", &CAGS::GetTownName, "München"},
        {"GetTownNameShort", &CAGS::GetTownNameShort, ""},
        {"GetStateName", &CAGS::GetStateName, "Bayern"},
        {"GetStateNameShort", &CAGS::GetStateNameShort, "BY"},
        {"GetCountyName", &CAGS::GetCountyName, "Oberbayern"},
        {"GetRuralDistrictName", &CAGS::GetRuralDistrictName, "München, Landeshauptstadt"},
        {"GetZIP", &CAGS::GetZIP, "80331"},
        {"GetWZ", &CAGS::GetWZ, "1"},
        {"GetSZ", &CAGS::GetSZ, "1a"},
        {"GetSRemark", &CAGS::GetSRemark, "SZ-Bemerkung"},
        {"GetWRemark", &CAGS::GetWRemark, "WZ-Bemerkung"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.member);
        EXPECT_EQ((a.*c.get)("09162000"), c.munich);
        EXPECT_EQ((a.*c.get)("09162001"), "");
        EXPECT_EQ((a.*c.get)("abc"), "");
    }
    EXPECT_EQ(a.GetTownName("05314000"), "Bonn [2]");
    for (const char* key : {"09162000", "05314000", "", "0", "99999999"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(a.Getsk(key), 0.0);
        EXPECT_EQ(a.Getqb(key), 0.0);
    }
}

TEST_F(CAGSTest, NothingIsCachedBetweenGetters) {
    const CAGS a;
    EXPECT_EQ(a.GetTownName("09162000"), "München");
    TownRec t;
    FindTownByAGS("09162000", t);
    t.SZ = "";
    SaveUserGem(t);
    EXPECT_EQ(a.GetTownName("09162000"), "München (modif.) [2]");
    EXPECT_EQ(a.GetSZ("09162000"), " ");
}

TEST_F(CAGSTest, ReachedByNameAndThroughCWindSnow) {
    auto ags = CreateObjectByName("cags");
    ASSERT_TRUE(ags);
    std::vector<Variant> args{Variant("09162000")};
    EXPECT_EQ(ags->Invoke("GetRuralDistrictName", args), Variant("München, Landeshauptstadt"));
    EXPECT_EQ(ags->GetProperty("Norm"), Variant(int16_t{50}));
    ags->LetProperty("Norm", Variant(int16_t{3}));
    EXPECT_EQ(ags->GetProperty("Norm"), Variant(int16_t{3}));
    EXPECT_EQ(ags->Invoke("Getsk", args), Variant(0.0));

    auto ws = CreateObjectByName("CWindSnow");
    const Variant ref = ws->GetProperty("AGS");
    ASSERT_TRUE(ref.isObject());
    ASSERT_FALSE(ref.isNothing());
    EXPECT_EQ(ref.asObject()->Invoke("GetTownName", args), Variant("München"));
    EXPECT_NE(CWindSnow().AGS, nullptr);
}

}  // namespace
