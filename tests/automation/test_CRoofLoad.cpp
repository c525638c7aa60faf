#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "automation/CRoofLoad.h"
#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"
#include "cp/CWindCpTable.h"
#include "cp/modWindCp.h"
#include "cp/modWindCpConv.h"
#include "support/CLocLite.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/Platform.h"

namespace {

using namespace qvrl;
using test::ErrorOf;

class CRoofLoadTest : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        platform_ = std::make_shared<HeadlessPlatform>();
        SetPlatform(platform_);
    }
    std::string Log() const { return test::ReadFile(TraceFileName()); }
    std::shared_ptr<HeadlessPlatform> platform_;
};

TEST_F(CRoofLoadTest, NewObjectStartsFromTheInitialValues) {
    State().SelectableCodesCtrl = "_1_3_50_";
    State().UseBauforschungsbericht = true;
    CRoofLoad r;
    EXPECT_EQ(r.Norm, 3);
    EXPECT_TRUE(r.SelectNorm);
    EXPECT_TRUE(r.DefaultAccNorm);
    EXPECT_FALSE(r.WithDefaults);
    EXPECT_FALSE(r.EditDeadLoad);
    EXPECT_TRUE(r.EnabledBuildingHeight);
    EXPECT_FALSE(r.NoBuildingHeight);
    EXPECT_FALSE(r.UseCpeDB);
    EXPECT_FALSE(r.OnOk());
    EXPECT_EQ(r.SelectableCodesCtrl(), "_1_3_");
    // Module state that a new object leaves alone.
    EXPECT_TRUE(r.UseBauforschungsbericht());
    ASSERT_TRUE(r.WindCpTable);
    ASSERT_TRUE(r.WindSnow);
    EXPECT_TRUE(r.WindSnow->AGS);
    EXPECT_TRUE(std::regex_match(r.Version(), std::regex(R"(\d+\.\d+\.\d+)"))) << r.Version();
    // Creation set up the language objects on the German file.
    ASSERT_TRUE(State().locActive);
    EXPECT_NE(r.LanguageFileName().find("QVRoofLoad_deu.scr"), std::string::npos);
    // The first entry of the log is the creation, with its time; the
    // language objects it set up trace after it.
    const std::string log = Log();
    EXPECT_TRUE(std::regex_search(log, std::regex(R"(^Now=\d{4}\.\d\d\.\d\d \d\d:\d\d:\d\d CROOFLOAD_INITIALIZE: \n)")))
        << log;
    EXPECT_NE(log.find("CLocLite.FileName="), std::string::npos) << log;
}

TEST_F(CRoofLoadTest, SelectableCodesAreSharedAndResetByEachNewObject) {
    CRoofLoad first;
    first.SelectableCodesCtrl("_1_3_50_54_");
    EXPECT_NE(Log().find("SelectableCodesString Set==_1_3_50_54_ \n"), std::string::npos);
    CRoofLoad second;
    EXPECT_EQ(second.SelectableCodesCtrl(), "_1_3_");
    EXPECT_EQ(first.SelectableCodesCtrl(), "_1_3_");
    first.UseBauforschungsbericht(true);
    EXPECT_TRUE(second.UseBauforschungsbericht());
}

TEST_F(CRoofLoadTest, EachDeprecatedShellRefusesWithItsOwnTitle) {
    CRoofLoad r;
    const std::vector<std::pair<std::string, std::function<double()>>> shells = {
        {"WindPressure_DIN1055_4_1986", [&] { return r.WindPressure_DIN1055_4_1986(10.0); }},
        {"WindPressure_DIN1055_4_2005", [&] { return r.WindPressure_DIN1055_4_2005(2, 3, 10.0); }},
        {"StandardSnowLoad_DIN1055_5_1975", [&] { return r.StandardSnowLoad_DIN1055_5_1975(2, 400.0); }},
        {"StandardSnowLoad_EDIN1055_5_2004", [&] { return r.StandardSnowLoad_EDIN1055_5_2004(-1, -1e300); }},
        {"StandardSnowLoad_DIN1055_7_2005", [&] { return r.StandardSnowLoad_DIN1055_7_2005(3, 1e9); }},
    };
    for (size_t i = 0; i < shells.size(); ++i) {
        SCOPED_TRACE(shells[i].first);
        EXPECT_EQ(shells[i].second(), 0.0);
        ASSERT_EQ(platform_->Messages().size(), i + 1);
        EXPECT_EQ(platform_->Messages()[i].text, "Funktion wird nicht mehr unterstützt");
        EXPECT_EQ(platform_->Messages()[i].title, shells[i].first + " ");
        EXPECT_EQ(platform_->Messages()[i].flags, mb::OKOnly);
    }
}

TEST_F(CRoofLoadTest, GabledRequestReadsTheTableAndTracesStartAndEnd) {
    CRoofLoad r;
    r.WindCpTable->Theta(0.0);
    r.WindCpTable->Alpha(20.0);
    r.GetWindCpValues_Gabled_Roof();

    CpWindRecord rec;
    Get_Wind_Cp_Satteldach(0.0, 20.0, rec);
    CWindCpTable expected;
    CpRecordToTable(rec, expected);
    EXPECT_NE(expected.Area_F10(), 0.0);
    EXPECT_EQ(r.WindCpTable->Area_F10(), expected.Area_F10());
    EXPECT_EQ(r.WindCpTable->Area_H1a(), expected.Area_H1a());
    EXPECT_EQ(r.WindCpTable->Alpha(), expected.Alpha());

    const std::string log = Log();
    const size_t start = log.find("GETWINDCPVALUES_GABLED_ROOF_START: \n");
    const size_t end = log.find("GETWINDCPVALUES_GABLED_ROOF_END: \n");
    ASSERT_NE(start, std::string::npos) << log;
    ASSERT_NE(end, std::string::npos) << log;
    EXPECT_LT(start, end);
}

TEST_F(CRoofLoadTest, InsideWithoutTheStoreEmptiesTheWholeTable) {
    CRoofLoad r;
    r.WindCpTable->TrTyp(2);
    r.WindCpTable->Theta(90.0);
    r.WindCpTable->Mue(0.5);
    r.WindCpTable->Area_Inside(0.2);
    r.WindCpTable->Area_F10(-1.8);
    r.GetWindCpValues_Inside();
    const auto obj = dispatch::WrapTarget(dispatch::TypeKey<CWindCpTable>(), r.WindCpTable);
    int checked = 0;
    for (const MemberInfo& m : obj->Members()) {
        if (m.kind != MemberKind::PropertyGet) continue;
        SCOPED_TRACE(m.name);
        EXPECT_EQ(obj->GetProperty(m.name).toDouble(), 0.0);
        ++checked;
    }
    EXPECT_EQ(checked, 71);
    // Only the gabled request traces.
    EXPECT_EQ(Log().find("GETWINDCPVALUES"), std::string::npos);
}

TEST_F(CRoofLoadTest, RequestsOnATableSetToNothingFail) {
    CRoofLoad r;
    r.WindCpTable.reset();
    EXPECT_EQ(ErrorOf([&] { r.GetWindCpValues_Vertical_Wall(); }), err::ObjectNotSet);
    EXPECT_EQ(ErrorOf([&] { r.GetWindCpValues_Inside(); }), err::ObjectNotSet);
}

TEST_F(CRoofLoadTest, HostSeesTheObjectByName) {
    auto obj = CreateObjectByName("croofload");
    ASSERT_TRUE(obj);
    EXPECT_EQ(obj->GetProperty("Norm"), Variant(int16_t{3}));
    EXPECT_EQ(obj->GetProperty("OnOk"), Variant(false));
    EXPECT_EQ(ErrorOf([&] { obj->LetProperty("OnOk", Variant(true)); }), err::NoSuchMember);
    EXPECT_EQ(ErrorOf([&] { obj->LetProperty("Version", Variant("9.9.9")); }), err::NoSuchMember);
    obj->LetProperty("UseCpeDB", Variant(true));
    EXPECT_EQ(obj->GetProperty("usecpedb"), Variant(true));
    // The subordinate table object is the same object the requests fill.
    Variant table = obj->GetProperty("WindCpTable");
    ASSERT_EQ(table.type(), Variant::Type::Object);
    std::vector<Variant> none;
    obj->LetProperty("UseCpeDB", Variant(false));
    table.asObject()->LetProperty("HzuD", Variant(1.0));
    obj->Invoke("GetWindCpValues_Vertical_Wall", none);
    CpWindRecord rec;
    Get_Wind_Cp_Wand(1.0, rec);
    EXPECT_NE(rec.A10, 0.0);
    EXPECT_EQ(table.asObject()->GetProperty("Area_A10").toDouble(), rec.A10);
}

}  // namespace
