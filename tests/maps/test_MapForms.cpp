#include <gtest/gtest.h>

#include <memory>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "maps/MapDialogs.h"
#include "maps/MapForms.h"
#include "maps/MapGeometry.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/Platform.h"

using namespace qvrl;

namespace {

class MapForms : public test::IsolatedTest {};

// Steps on a map: layer 0 is the base, -1 a click on the control itself.
struct MapStep {
    int32_t layer;
    bool click;
    int16_t selectedLayer;
    int16_t selectedValue;
    int16_t eventLayer;
    std::string text;
};

TEST_F(MapForms, LayersReportTheirCodeAndTheBaseKeepsTheLastZone) {
    // The 2005 snow list: 1, 1a=11, 2, 2a=21, 3; layer 2 stands for code 11.
    ucImageMap map("ucIMSLZ_11", -1, "ucIMSLZ_1", SnowZoneList2005, MapPicture{});
    map.InitMe();
    int clicks = 0;
    int16_t eventLayer = -1;
    std::string text = "unset";
    map.Click = [&] { ++clicks; };
    map.MouseMove = [&](int16_t, int16_t, float, float, int16_t layer, const std::string& t) {
        eventLayer = layer;
        text = t;
    };
    const MapStep steps[] = {
        {0, true, 0, 0, 0, ""},      // before any zone: nothing selected, the click still raised
        {2, false, 2, 11, 2, "1a"},  // code 11 on the second layer
        {0, true, 2, 11, 2, ""},     // the base layer keeps the zone just left
        {5, false, 5, 3, 5, "3"},
        {4, true, 4, 21, 4, "2a"},
    };
    int expectedClicks = 0;
    for (const MapStep& s : steps) {
        map.MoveOverLayer(s.layer);
        if (s.click) {
            map.ClickLayer(s.layer);
            ++expectedClicks;
        }
        EXPECT_EQ(map.SelectedLayer(), s.selectedLayer) << s.layer;
        EXPECT_EQ(map.SelectedValue(), Variant(s.selectedValue)) << s.layer;
        EXPECT_EQ(eventLayer, s.eventLayer) << s.layer;
        EXPECT_EQ(text, s.text) << s.layer;
        EXPECT_EQ(clicks, expectedClicks) << s.layer;
    }
    EXPECT_EQ(test::ErrorOf([&] { map.MoveOverLayer(6); }), 9);
    EXPECT_EQ(map.LayerOfCode(21), 3);
    EXPECT_EQ(map.LayerOfCode(4), -1);
}

TEST_F(MapForms, ResizeStacksTheLayersOnTheBaseAndLayerPropertiesPersist) {
    ucImageMap map("ucIMWZ_11", -1, "ucIMWZ_1", WindZoneList2005, MapPicture{});
    map.ucBaseLayer().Move(120, 80, 6000, 7000);
    map.Resize();
    for (int32_t i = 0; i < map.LayerCount(); ++i) {
        const ucLayer& l = map.ucLayers(i);
        EXPECT_EQ((std::vector<int32_t>{l.Left, l.Top, l.Width, l.Height}), (std::vector<int32_t>{0, 0, 6000, 7000}));
        EXPECT_EQ(l.MaskColor(), 0u);
    }
    EXPECT_EQ(map.ucBaseLayer().Left, 0);

    ucLayer a;
    std::vector<std::string> changed;
    a.PropertyChanged = [&](const std::string& n) { changed.push_back(n); };
    PropertyBag fresh;
    a.WriteProperties(fresh);
    EXPECT_TRUE(fresh.Entries().empty());  // defaults are not stored
    a.MyValue(Variant(int16_t{21}));
    a.BackStyle(0);
    a.Picture("slz.png");
    EXPECT_EQ(changed, (std::vector<std::string>{"MyValue", "BackStyle", "Picture"}));
    PropertyBag bag;
    a.WriteProperties(bag);
    ucLayer b;
    b.ReadProperties(bag);
    EXPECT_EQ(b.MyValue(), Variant(int16_t{21}));
    EXPECT_EQ(b.BackStyle(), 0);
    EXPECT_EQ(b.Picture(), "slz.png");
    EXPECT_EQ(b.MaskColor(), ucLayer::DefaultMaskColor);
}

TEST_F(MapForms, UpdateDataFindsTheCodeNotThePosition) {
    struct {
        std::function<std::unique_ptr<ZoneMapForm>()> make;
        int16_t value;
        int32_t listIndex;
        int16_t valueAfter;
    } cases[] = {
        {[] { return std::make_unique<frmSLZ_1>(); }, 21, 3, 21},
        {[] { return std::make_unique<frmSLZ_1>(); }, 7, 0, 1},
        {[] { return std::make_unique<frmSLZ>(); }, 4, 3, 4},
        {[] { return std::make_unique<frmWZ_2>(); }, 5, 4, 5},
        // Czech zones begin with code 1; an unknown value still becomes 1.
        {[] { return std::make_unique<frmEN_SZ>(11); }, 99, 0, 1},
        {[] { return std::make_unique<frmClimaEN>(); }, 10, 10, 10},
        {[] { return std::make_unique<frmClimaEN>(); }, 0, 0, 1},
    };
    for (auto& c : cases) {
        auto f = c.make();
        f->Load();
        f->Value(c.value);
        f->UpdateData(false);
        EXPECT_EQ(f->List().ListIndex(), c.listIndex) << f->FormName() << " " << c.value;
        EXPECT_EQ(f->Value(), c.valueAfter) << f->FormName() << " " << c.value;
        f->Unload();
    }
}

TEST_F(MapForms, WindMapListFollowsAndShowsTheReferencePressure) {
    frmWZ_1 f;
    f.Load();
    f.Localize();
    f.WZ(3);
    f.UpdateData(false);
    EXPECT_EQ(f.Get<Label>("lblqref").Caption(), LoadResStr(Variant(int32_t{287})) + "0.47 kN/m\xC2\xB2");
    // A choice in the list takes effect at once, without re-entering itself.
    f.List().ListIndex(0);
    EXPECT_EQ(f.WZ(), 1);
    EXPECT_EQ(f.Get<Label>("lblqref").Caption(), LoadResStr(Variant(int32_t{287})) + "0.32 kN/m\xC2\xB2");
    // The snow map's list waits for OK.
    frmSLZ s;
    s.Load();
    s.SLZ(2);
    s.UpdateData(false);
    s.List().ListIndex(0);
    EXPECT_EQ(s.SLZ(), 2);
}

TEST_F(MapForms, ACancelledMapClickLeavesTheCallersValue) {
    auto headless = std::make_shared<HeadlessPlatform>();
    SetPlatform(headless);
    headless->OnShow("frmSLZ_1", [](FormBase& b) {
        auto& f = dynamic_cast<frmSLZ_1&>(b);
        f.Map().MoveOverLayer(4);
        f.Map().ClickLayer(0);
        EXPECT_EQ(f.SLZ(), 21);  // the map moved the value already
        f.Buttons().cmdCancel().PerformClick();
    });
    int16_t zone = 2;
    EXPECT_EQ(SnowZoneByMap2005(zone), -1);
    EXPECT_EQ(zone, 2);
    headless->OnShow("frmWindCategory100_WithoutGrf", [](FormBase& b) {
        auto& f = dynamic_cast<WindCategoryForm&>(b);
        EXPECT_TRUE(f.Option(2).Value());
        f.Option(5).PerformClick();
        f.PressKey(key::Escape);
    });
    int16_t wcat = 3;
    EXPECT_EQ(WindCategoryByView2005(wcat), -1);
    EXPECT_EQ(wcat, 3);
}

TEST_F(MapForms, CategoryDialogsMapOptionsToCodes) {
    struct {
        std::function<std::unique_ptr<WindCategoryForm>()> make;
        int16_t in;
        int16_t checked;  // option checked by UpdateData(false), -1 none
        int16_t click;
        int16_t out;
    } cases[] = {
        {[] { return std::make_unique<frmWindCategory100>(); }, 1, 0, 5, 6},
        {[] { return std::make_unique<frmWindCategory100>(); }, 7, -1, 0, 1},
        {[] { return std::make_unique<frmWindCategory100_WithoutGrf>(); }, 0, -1, 3, 4},
        {[] { return std::make_unique<frmWindCategoryEN>(); }, 0, 0, 4, 4},
        {[] { return std::make_unique<frmWindCategoryEN>(); }, 5, -1, 2, 2},
        {[] { return std::make_unique<frmWindCategoryEN_BS>(); }, 4, 4, 0, 0},
    };
    for (auto& c : cases) {
        auto f = c.make();
        f->Load();
        f->WCat(c.in);
        f->UpdateData(false);
        for (int16_t i = 0; i < f->OptionCount(); ++i)
            EXPECT_EQ(f->Option(i).Value(), i == c.checked) << f->FormName() << " " << c.in << " option " << i;
        f->Option(c.click).PerformClick();
        f->UpdateData(true);
        EXPECT_EQ(f->WCat(), c.out) << f->FormName();
    }
    frmWindCategoryEN_BS bs;
    bs.Load();
    bs.Localize();
    EXPECT_EQ(bs.Option(3).Caption().rfind("town\n(", 0), 0u) << bs.Option(3).Caption();
    EXPECT_NE(bs.Caption().find("BS to EN 1991-1-4:2005"), std::string::npos);
    bs.WCat_Enabled(1, false);
    bs.WCat_Enabled(9, false);  // past the last option: ignored
    EXPECT_FALSE(bs.WCat_Enabled(1));
    EXPECT_TRUE(bs.WCat_Enabled(0));
}

TEST_F(MapForms, OrographyRoundTrip) {
    auto headless = std::make_shared<HeadlessPlatform>();
    SetPlatform(headless);
    headless->OnShow("frmOrographic", [](FormBase& b) {
        auto& f = dynamic_cast<frmOrographic&>(b);
        EXPECT_EQ(f.txtOro(0).Text(), Variant(0.25));
        f.txtOro(1).Text(Variant(0.75));
        f.Get<QVButtons>("QVButtons1").cmdOk().PerformClick();
    });
    double phi = 0.25, s = 0.5;
    EXPECT_TRUE(OrographyByView(phi, s));
    EXPECT_EQ(phi, 0.25);
    EXPECT_EQ(s, 0.75);
}

// A 4 x 4 square with a 2 x 2 hole, quantized, and a triangle drawn with a
// reversed arc: the decoder must undo the deltas, the transform and the
// reversal, and the hole must not answer.
TEST_F(MapForms, TopoJsonDecodesArcsAndHitsInsideOnly) {
    const std::string topo = R"J({"type":"Topology",
      "transform":{"scale":[0.5,0.25],"translate":[10,50]},
      "arcs":[[[0,0],[8,0],[0,16],[-8,0],[0,-16]],
              [[2,4],[0,8],[4,0],[0,-8],[-4,0]],
              [[20,0],[4,0]],[[20,8],[4,-8]]],
      "objects":{"gemeinden":{"type":"GeometryCollection","geometries":[
        {"type":"Polygon","arcs":[[0],[1]],"properties":{"AGS":"01001000","GEN":"Ring"}},
        {"type":"MultiPolygon","arcs":[[[2,-4]]],"properties":{"AGS":"01002000","GEN":"Dreieck"}},
        {"type":"Point","coordinates":[0,0]}]}}})J";
    const MapLayerShapes s = DecodeTopoJson(topo, "gemeinden", "AGS", "GEN");
    ASSERT_EQ(s.shapes.size(), 2u);
    EXPECT_EQ(s.shapes[0].id, "01001000");
    EXPECT_EQ(s.shapes[1].name, "Dreieck");
    EXPECT_EQ(s.shapes[0].rings[0][1].x, 14.0);  // 8 * 0.5 + 10
    EXPECT_EQ(s.shapes[0].rings[0][2].y, 54.0);  // 16 * 0.25 + 50
    // The joined triangle repeats no point where its arcs meet.
    EXPECT_EQ(s.shapes[1].rings[0].size(), 3u);
    struct {
        MapPoint p;
        int32_t hit;
    } cases[] = {
        {{10.5, 50.5}, 0},  // inside the ring
        {{12.0, 52.0}, -1},  // in the hole
        {{15.0, 52.0}, -1},  // east of the square
        {{21.0, 50.5}, 1},
        {{21.5, 51.5}, -1},  // beside the triangle's slope
    };
    for (const auto& c : cases) EXPECT_EQ(s.HitTest(c.p), c.hit) << c.p.x << " " << c.p.y;

    const std::string bad[] = {"{", R"({"type":"Topology","arcs":[[[0,0]]],"objects":{}})",
                               R"({"type":"Topology","arcs":[],"objects":{"gemeinden":{"geometries":[{"type":"Polygon","arcs":[[3]]}]}}})",
                               R"({"type":"Topology","arcs":[[["a",0]]],"objects":{"gemeinden":{"geometries":[]}}})"};
    for (const std::string& b : bad) EXPECT_EQ(test::ErrorOf([&] { DecodeTopoJson(b, "gemeinden", "AGS", "GEN"); }), 5) << b;
}

TEST_F(MapForms, ShippedBoundariesLoadOnceAndFindAPlace) {
    const MapLayerShapes& de = LoadBoundaries(Boundaries::GermanMunicipalities);
    EXPECT_EQ(de.shapes.size(), 10997u);
    EXPECT_EQ(&de, &LoadBoundaries(Boundaries::GermanMunicipalities));
    // Köln's centroid lies in Köln.
    const int32_t hit = de.HitTest({6.97, 50.95});
    ASSERT_GE(hit, 0);
    EXPECT_EQ(de.shapes[static_cast<size_t>(hit)].id, "05315000");
}

}  // namespace
