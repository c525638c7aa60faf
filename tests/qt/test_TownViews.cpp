// The town selection on screen: the list's columns in their order, and the
// postcode filter narrowing the list as the user types.

#include <QDir>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <cstdlib>
#include <filesystem>

#include "ControlWidgets.h"
#include "QtPlatform.h"
#include "QtTests.h"
#include "location/frmSelTown.h"
#include "store/modDAO.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"

namespace qvrl::qt::test {

class TownViewsTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        namespace fs = std::filesystem;
        QVERIFY(dir_.isValid());
        const fs::path program = dir_.path().toStdString() + "/program";
        const fs::path built = ProgramFolder();
        fs::create_directories(program);
        fs::copy_file(built / "qvrl.mdb", program / "qvrl.mdb");
        fs::copy_file(built / "language.ini", program / "language.ini");
        fs::copy(built / "deu", program / "deu", fs::copy_options::recursive);
        setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);
        setenv("APPDATA", (dir_.path().toStdString() + "/user").c_str(), 1);
        ResetModuleState();
        auto db = DBEngine::OpenDatabase((program / "qvrl.mdb").string(), Variant(), Variant(false));
        auto rs = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
        const char* towns[][3] = {{"05315000", "Köln", "50667"}, {"05334002", "Aachen", "52058"},
                                  {"05334004", "Alsdorf", "52477"}};
        int32_t id = 0;
        for (const auto& t : towns) {
            const std::string ags = t[0];
            rs->AddNew();
            const std::pair<const char*, std::string> cells[] = {
                {"AGS", ags},       {"BL_ID", ags.substr(0, 2)}, {"BL_Name", "Nordrhein-Westfalen"},
                {"Reg_ID", "3"},    {"Reg_Name", "Köln"},        {"LK_ID", ags.substr(3, 2)},
                {"LK_Name", ags[4] == '5' ? "Köln" : "Aachen"}, {"Gem_ID", ags.substr(5)}, {"Gemeinde", t[1]},
                {"PLZ", t[2]},      {"WZ", "1"},                 {"SZ", "2"}};
            rs->Fields("ID").Value(Variant(++id));
            for (const auto& [name, value] : cells) rs->Fields(name).Value(Variant(value));
            rs->Update();
        }
        rs->Close();
        db->Close();
        InitLanguageObjects();
        platform_ = std::make_shared<QtPlatform>();
        SetPlatform(platform_);
    }
    void cleanup() {
        SetPlatform(nullptr);
        platform_.reset();
        unsetenv("QVRL_PROGRAM_FOLDER");
        ResetModuleState();
    }

    void listShowsColumnsInOrderAndPostcodeNarrowsIt() {
        frmSelTown f;
        f.ShowModeless();
        QWidget* dialog = platform_->DialogOf(f);
        QVERIFY(dialog);
        auto* table = dialog->findChild<QTableView*>("LVGEM");
        QVERIFY(table);
        const QStringList expected = {"Land", "Reg.-Bezirk", "Landkreis", "PLZ", "Gemeinde", "AGS", "WZ", "SZ", " ", " "};
        QStringList shown;
        for (int c = 0; c < table->model()->columnCount(); ++c)
            shown << table->model()->headerData(c, Qt::Horizontal).toString();
        QCOMPARE(shown, expected);

        f.cbBL.ListIndex([&] {
            for (int32_t i = 0; i < f.cbBL.ListCount(); ++i)
                if (f.cbBL.List(i) == "Nordrhein-Westfalen") return i;
            return -1;
        }());
        QVERIFY(table->isVisible());
        QCOMPARE(table->model()->rowCount(), 3);

        auto* box = dialog->findChild<QVTextBoxWidget*>("TXTAGS(0)");
        QVERIFY(box);
        box->Edit()->setFocus();
        QTest::keyClicks(box->Edit(), "52");
        QCOMPARE(box->Edit()->text(), QString("52"));
        QCOMPARE(table->model()->rowCount(), 2);
        QTest::keyClicks(box->Edit(), "4");
        QCOMPARE(table->model()->rowCount(), 1);
        QCOMPARE(table->model()->index(0, 4).data().toString(), QString("Alsdorf"));
        QCOMPARE(box->Edit()->text(), QString("524"));
        f.Unload();
    }

private:
    QTemporaryDir dir_;
    std::shared_ptr<QtPlatform> platform_;
};

static Add<TownViewsTest> add;

}  // namespace qvrl::qt::test

#include "test_TownViews.moc"
