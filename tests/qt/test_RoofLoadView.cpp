// The dialog of DIN 1055-4:1986 as a user meets it: shown through the Qt
// platform, a typed building height and Enter recompute the velocity
// pressure at once, and OK takes it.

#include <QTest>

#include <string>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "QtTests.h"
#include "dialogs/frmRoofLoad.h"
#include "rules/modWind.h"
#include "support/ModuleState.h"

namespace qvrl::qt::test {

class RoofLoadViewTest : public QObject {
    Q_OBJECT
private slots:
    void typedHeightRecomputesTheVelocityPressure() {
        auto platform = std::make_shared<QtPlatform>();
        SetPlatform(platform);
        State().SelectableCodesCtrl = "_1_3_";
        std::string shownWq;
        bool moved = false;
        {
            frmRoofLoad form;
            form.Load();
            form.Norm(1);
            form.MitNormSelect = true;
            form.Hoehe_Geb = 5;
            form.SLZ = 2;
            form.Hoehe_NN = 450;
            form.Init_Me();
            form.UpdateData(false, "");
            WhenModal([&](QWidget* w) {
                auto* view = qobject_cast<FormView*>(w);
                if (!view) return;
                auto* box = static_cast<QVTextBoxWidget*>(view->WidgetOf("txtWind(0)"));
                // The offscreen platform activates no window, so the click
                // into the box is handed to the model as the view hands on focus.
                view->Model().SetFocus(*view->Model().Find("txtWind(0)"));
                box->Edit()->selectAll();
                QTest::keyClicks(box->Edit(), "12");
                QTest::keyClick(box->Edit(), Qt::Key_Return);
                moved = view->focusWidget() != box->Edit();
                auto* wq = static_cast<QVTextBoxWidget*>(view->WidgetOf("txtWind(1)"));
                shownWq = wq->Edit()->text().toStdString();
                auto* strip = static_cast<QVButtonsWidget*>(view->WidgetOf("QVButtons1"));
                QTest::mouseClick(strip->Ok(), Qt::LeftButton);
            });
            form.Show();
            QVERIFY(moved);
            QVERIFY(form.Accepted);
            QCOMPARE(form.Hoehe_Geb, 12.0);
            // 8 m < h <= 20 m: 0.8 kN/m², exact in the rule's table.
            QCOMPARE(form.Rechenwert_wq, WindPressure_DIN1055_4_1986(12.0));
            QCOMPARE(shownWq, std::string("0.80"));
            form.Unload();
        }
        SetPlatform(nullptr);
    }
};

static Add<RoofLoadViewTest> add;

}  // namespace qvrl::qt::test

#include "test_RoofLoadView.moc"
