// The catalogue grid on screen: a click on a heading leaves the cursor
// where it was, a click on a load row selects it in the model.

#include <QHeaderView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <cstdlib>

#include "QtPlatform.h"
#include "QtTests.h"
#include "dialogs/frmLiveLoadSelect_1.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"

namespace qvrl::qt::test {

class LiveLoadViewsTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        QVERIFY(dir_.isValid());
        setenv("APPDATA", (dir_.path().toStdString() + "/user").c_str(), 1);
        ResetModuleState();
        InitLanguageObjects();
        platform_ = std::make_shared<QtPlatform>();
        SetPlatform(platform_);
    }
    void cleanup() {
        SetPlatform(nullptr);
        platform_.reset();
        ResetModuleState();
    }

    void clickSelectsLoadRowsButNotHeadings() {
        frmLiveLoadSelect_1 f;
        f.Load();
        f.Norm = 3;
        f.Init_Me();
        f.ShowModeless();
        QWidget* dialog = platform_->DialogOf(f);
        QVERIFY(dialog);
        auto* table = dialog->findChild<QTableWidget*>("GRIDSEL");
        QVERIFY(table);
        const QVGridX& g = f.gridSel();
        QCOMPARE(table->rowCount(), g.RowCount());
        QCOMPARE(table->item(0, LiveLoadSelectForm::ColWert)->text(), QString("0"));
        // The load stands beside the row number, however often the grid is filled.
        QCOMPARE(table->horizontalHeader()->visualIndex(LiveLoadSelectForm::ColWert), 1);
        QCOMPARE(g.RowFlags(1), gridflag::Heading);
        QCOMPARE(table->item(1, 0)->flags(), Qt::NoItemFlags);
        QCOMPARE(g.SelectedRow(), 0);

        const auto click = [&](int row) {
            const QRect cell = table->visualItemRect(table->item(row, 0));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
        };
        table->scrollToTop();
        click(1);
        QCOMPARE(g.SelectedRow(), 0);
        click(2);
        QCOMPARE(g.SelectedRow(), 2);
        QCOMPARE(table->currentRow(), 2);
        QCOMPARE(f.Get<Label>("lblStatus").Caption(), f.RowRecord(2)->Langtext);
        f.Unload();
    }

private:
    QTemporaryDir dir_;
    std::shared_ptr<QtPlatform> platform_;
};

static Add<LiveLoadViewsTest> add;

}  // namespace qvrl::qt::test

#include "test_LiveLoadViews.moc"
