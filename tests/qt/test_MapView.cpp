#include <QDialog>
#include <QTest>
#include <filesystem>

#include "MapView.h"
#include "QtPlatform.h"
#include "QtTests.h"
#include "ControlWidgets.h"
#include "maps/MapDialogs.h"
#include "maps/MapForms.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"

namespace qvrl::qt::test {

namespace {

// A copy of the built town table with zones for three municipalities.
std::string TownFixture() {
    namespace fs = std::filesystem;
    const char* tmp = std::getenv("APPDATA");
    const fs::path dir = fs::path(tmp && *tmp ? tmp : "/tmp") / "map-fixture";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path file = dir / "qvrl.mdb";
    fs::copy_file(fs::path(ProgramFolder()) / "qvrl.mdb", file);
    auto db = DBEngine::OpenDatabase(file.string(), Variant(), Variant(false));
    struct Row {
        const char* ags;
        const char* name;
        const char* sz;
        const char* wz;
    } rows[] = {{"05315000", "Köln", "1", "2"}, {"09162000", "München", "1a", "1"}, {"03241001", "Hannover", "2", "2"}};
    int32_t id = 0;
    for (const Row& r : rows) {
        auto rs = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
        rs->AddNew();
        rs->Fields("ID").Value(Variant(++id));
        rs->Fields("AGS").Value(Variant(r.ags));
        rs->Fields("Gemeinde").Value(Variant(r.name));
        rs->Fields("SZ").Value(Variant(r.sz));
        rs->Fields("WZ").Value(Variant(r.wz));
        rs->Update();
    }
    db->Close();
    return file.string();
}

MapWidget* MapOf(QWidget* dialog) { return dialog->findChild<MapWidget*>(); }

}  // namespace

class MapViewTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        ResetModuleState();
        SetStoreFileOverride("qvrl.mdb", TownFixture());
        SetPlatform(std::make_shared<QtPlatform>());
    }
    void cleanup() {
        SetPlatform(nullptr);
        SetStoreFileOverride("qvrl.mdb", "");
        ResetModuleState();
    }

    // A click inside a municipality's boundary picks the zone the town
    // table holds for it; one without a zone is base layer and keeps it.
    void clickInsideAMunicipalityPicksItsZone_data() {
        QTest::addColumn<double>("lon");
        QTest::addColumn<double>("lat");
        QTest::addColumn<int>("expected");
        QTest::newRow("München 1a") << 11.55 << 48.14 << 11;
        QTest::newRow("Köln 1") << 6.97 << 50.95 << 1;
        QTest::newRow("Hannover 2") << 9.74 << 52.37 << 2;
        QTest::newRow("Kassel, no zone") << 9.48 << 51.31 << 21;  // the entry value stays
    }
    void clickInsideAMunicipalityPicksItsZone() {
        QFETCH(double, lon);
        QFETCH(double, lat);
        QFETCH(int, expected);
        QString attribution;
        WhenModal([&](QWidget* w) {
            MapWidget* map = MapOf(w);
            QVERIFY(map);
            attribution = map->Attribution();
            const QPoint at = map->ToWidget({lon, lat}).toPoint();
            QTest::mouseMove(map, at);
            QTest::mouseClick(map, Qt::LeftButton, {}, at);
            auto* model = dynamic_cast<ucImageMap*>(ControlOf(map));
            QVERIFY(model);
            dynamic_cast<ZoneMapForm*>(model->Parent())->Buttons().cmdOk().PerformClick();
        });
        int16_t zone = 21;
        QCOMPARE(SnowZoneByMap2005(zone), expected);
        QCOMPARE(zone, expected);
        QCOMPARE(attribution, QString::fromUtf8("© GeoBasis-DE / BKG 2021 (Daten verändert)"));
    }

    // Where no zone geography exists, each swatch of the legend is its zone's layer.
    void legendSwatchIsTheZoneLayer() {
        WhenModal([&](QWidget* w) {
            MapWidget* map = MapOf(w);
            QVERIFY(map);
            const QPoint at = map->SwatchCentre(3).toPoint();
            QTest::mouseMove(map, at);
            QTest::mouseClick(map, Qt::LeftButton, {}, at);
            auto* model = dynamic_cast<ucImageMap*>(ControlOf(map));
            QCOMPARE(model->SelectedLayer(), int16_t{4});
            dynamic_cast<ZoneMapForm*>(model->Parent())->Buttons().cmdOk().PerformClick();
        });
        int16_t zone = 1;
        QCOMPARE(SnowZoneByMap1975(zone), int16_t{4});
    }
};

static Add<MapViewTest> add;

}  // namespace qvrl::qt::test

#include "test_MapView.moc"
