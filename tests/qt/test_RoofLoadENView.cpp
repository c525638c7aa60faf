// The Eurocode roof load dialog as a user meets it: the session opens the
// form through the Qt platform, a typed building height and a click on OK
// reach the block file.

#include <QLineEdit>
#include <QPushButton>
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

const char* const kFile =
    "@VERSION Vers CtrlNorm\r\nVERSION 004 000\r\n@SELECTCODES\r\nSELECTCODES '_1_3_'\r\n"
    "@TOWN            AGS\r\nTOWN     ''\r\n"
    "@WINDLOAD        Norm        q0          h         wz        cat         qb\r\n"
    "WINDLOAD         54   0.000050      10.00          0          2       0.39\r\n"
    "@SNOWLOAD        Norm        s0          h         sz\r\n"
    "SNOWLOAD         54   0.000085     250.00          2\r\n";

}  // namespace

class RoofLoadENViewTest : public QObject {
    Q_OBJECT
private slots:
    void typedHeightAndOkWriteTheFile() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString file = dir.filePath(QStringLiteral("roof.asc"));
        WriteBlockFile(file, kFile);
        auto platform = std::make_shared<QtPlatform>();
        SetPlatform(platform);
        bool typed = false;
        bool switchShown = false;
        WhenModal([&](QWidget* w) {
            auto* view = qobject_cast<FormView*>(w);
            if (!view) return;
            // Without dead loads their group is hidden, the switch is not.
            switchShown = view->WidgetOf("chkNorm")->isVisible();
            auto* box = static_cast<QVTextBoxWidget*>(view->WidgetOf("txtWind(0)"));
            // The offscreen platform activates no window, so the click into
            // the box is handed to the model as the view hands on focus.
            view->Model().SetFocus(*view->Model().Find("txtWind(0)"));
            box->Edit()->selectAll();
            QTest::keyClicks(box->Edit(), "12");
            // Enter moves on, which validates the box and recomputes q_p.
            QTest::keyClick(box->Edit(), Qt::Key_Return);
            typed = view->focusWidget() != box->Edit();
            auto* strip = static_cast<QVButtonsWidget*>(view->WidgetOf("QVButtons1"));
            QTest::mouseClick(strip->Ok(), Qt::LeftButton);
        });
        {
            CRoofLoad roof;
            roof.ShowRoofLoadDlg_EN(file.toStdString());
            QVERIFY(typed);
            QVERIFY(switchShown);
            QVERIFY(roof.OnOk());
        }
        SetPlatform(nullptr);
        const std::string text = ReadBlockFile(file);
        // h is the typed 12 m; q_p = 0.39 kN/m² · ce(12 m, category II) = 0.963 kN/m², to the hundredth.
        QVERIFY2(text.find("WINDLOAD         54   0.000096      12.00          0          2          0\r\n") !=
                     std::string::npos,
                 text.c_str());
        QVERIFY2(text.find("SELECTCODES '_1_3_54_'") != std::string::npos, text.c_str());
    }
};

static Add<RoofLoadENViewTest> add;

}  // namespace qvrl::qt::test

#include "test_RoofLoadENView.moc"
