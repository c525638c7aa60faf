// The DIN 1055-100 roof load dialog as a user meets it: the session opens
// the form through the Qt platform; the height note shows red above its
// limit, a wind zone picked with the keyboard and a click on OK reach the
// block file.

#include <QComboBox>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <iterator>
#include <string>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "QtTests.h"
#include "automation/CRoofLoad.h"
#include "support/ModuleState.h"

namespace qvrl::qt::test {

namespace {

// Snow zone 1 at 820 m: above the 800 m of the zone, below the 1100 m of wind.
const char* const kFile =
    "@VERSION Vers CtrlNorm\r\nVERSION 004 000\r\n@SELECTCODES\r\nSELECTCODES '_1_3_'\r\n"
    "@TOWN            AGS\r\nTOWN     ''\r\n"
    "@WINDLOAD        Norm        q0          h         wz        cat         qb\r\n"
    "WINDLOAD          3   0.000050      10.00          1          2          0\r\n"
    "@SNOWLOAD        Norm        s0          h         sz\r\n"
    "SNOWLOAD          3   0.000085     820.00          1\r\n";

}  // namespace

class RoofLoad100ViewTest : public QObject {
    Q_OBJECT
private slots:
    void redNoteAndZoneByKeyboardReachTheFile() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString file = dir.filePath(QStringLiteral("roof.asc"));
        WriteBlockFile(file, kFile);
        auto platform = std::make_shared<QtPlatform>();
        SetPlatform(platform);
        QColor snowNote, windNote;
        QString zoneShown;
        bool switchShown = false;
        WhenModal([&](QWidget* w) {
            auto* view = qobject_cast<FormView*>(w);
            if (!view) return;
            // Without dead loads their group is hidden, the switch is not.
            switchShown = view->WidgetOf("chkNorm")->isVisible();
            snowNote = view->WidgetOf("lblSnowH")->palette().color(QPalette::WindowText);
            windNote = view->WidgetOf("lblWindH")->palette().color(QPalette::WindowText);
            auto* zone = qobject_cast<QComboBox*>(view->WidgetOf("cbWZ"));
            if (!zone) return;
            zone->setFocus();
            QTest::keyClick(zone, Qt::Key_Down);
            zoneShown = zone->currentText();
            auto* strip = static_cast<QVButtonsWidget*>(view->WidgetOf("QVButtons1"));
            QTest::mouseClick(strip->Ok(), Qt::LeftButton);
        });
        {
            CRoofLoad roof;
            roof.ShowRoofLoadDlg_1(file.toStdString());
            QVERIFY(roof.OnOk());
        }
        SetPlatform(nullptr);
        QVERIFY(switchShown);
        QCOMPARE(snowNote, QColor(255, 0, 0));
        QVERIFY(windNote != QColor(255, 0, 0));
        QCOMPARE(zoneShown, QStringLiteral("2"));
        const std::string text = ReadBlockFile(file);
        // The zone list's own read recomputes q; the columns after it hold zone 2.
        QVERIFY2(text.find("      10.00          2          2          0\r\n") != std::string::npos, text.c_str());
        QVERIFY2(text.find("SNOWLOAD          3   0.000085     820.00          1\r\n") != std::string::npos,
                 text.c_str());
    }
};

static Add<RoofLoad100ViewTest> add;

}  // namespace qvrl::qt::test

#include "test_RoofLoad100View.moc"
