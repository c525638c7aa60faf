#include <QLineEdit>
#include <QPointer>
#include <QTest>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "QtTests.h"
#include "support/ModuleState.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"

namespace qvrl::qt::test {

namespace {

// Two boxes and the strip, every event written down in the order raised.
class frmProbe : public Form {
public:
    frmProbe() {
        a = &Add<QVTextBox>("txtA");
        b = &Add<QVTextBox>("txtB");
        buttons = &Add<QVButtons>("QVButtons1");
        a->KeyDown = [this](int16_t& k, int16_t) { log.push_back("KeyDown " + std::to_string(k)); };
        a->KeyPress = [this](int16_t& k) { log.push_back("KeyPress " + std::to_string(k)); };
        a->KeyUp = [this](int16_t& k, int16_t) { log.push_back("KeyUp " + std::to_string(k)); };
        a->Change = [this] { log.push_back("Change " + a->EditText()); };
        a->ValidateEvent = [this](bool& ok) { log.push_back(std::string("Validate ") + (ok ? "ok" : "failed")); };
        buttons->OnOk = [this] { log.push_back("OnOk"); };
        buttons->OnCancel = [this] { log.push_back("OnCancel"); };
    }
    std::string FormName() const override { return "frmProbe"; }
    QVTextBox* a;
    QVTextBox* b;
    QVButtons* buttons;
    std::vector<std::string> log;
};

// One line per event, so that a failure shows the whole order.
QString Joined(const std::vector<std::string>& log) {
    QStringList l;
    for (const auto& e : log) l << QString::fromStdString(e);
    return l.join(QStringLiteral(" | "));
}

QLineEdit* EditOf(FormView& v, const char* key) {
    return static_cast<QVTextBoxWidget*>(v.WidgetOf(key))->Edit();
}

}  // namespace

class ControlWidgetsTest : public QObject {
    Q_OBJECT
private slots:
    // Typing raises key press then change per character; leaving validates.
    void typingReachesTheModelInFormOrder() {
        frmProbe f;
        FormView v(f);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        EditOf(v, "txtA")->setFocus();
        QTRY_VERIFY(f.ActiveControl() == f.a);
        f.log.clear();
        QTest::keyClicks(EditOf(v, "txtA"), "1x2");
        QTest::keyClick(EditOf(v, "txtA"), Qt::Key_Tab);
        QTRY_VERIFY(f.ActiveControl() == f.b);
        // "x" is no digit: the box drops it before its host sees a key press.
        const std::vector<std::string> want = {"KeyDown 49", "KeyPress 49", "Change 1",     "KeyUp 49",
                                               "KeyDown 88", "KeyUp 88",    "KeyDown 50",   "KeyPress 50",
                                               "Change 12",  "KeyUp 50",    "Change 12.00", "Validate ok"};
        QCOMPARE(Joined(f.log), Joined(want));
        QCOMPARE(EditOf(v, "txtA")->text(), QStringLiteral("12.00"));
    }

    // A failed validation keeps the focus in the box.
    void failedValidationKeepsTheFocus() {
        frmProbe f;
        f.a->MinCheck = true;
        f.a->Min = 5;
        FormView v(f);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        EditOf(v, "txtA")->setFocus();
        QTRY_VERIFY(f.ActiveControl() == f.a);
        QTest::keyClicks(EditOf(v, "txtA"), "1");
        QTest::keyClick(EditOf(v, "txtA"), Qt::Key_Tab);
        QCOMPARE(f.ActiveControl(), static_cast<Control*>(f.a));
        QCOMPARE(EditOf(v, "txtA")->text(), QStringLiteral("5.00"));
    }

    void modelChangesShowAtOnce() {
        frmProbe f;
        FormView v(f);
        f.a->DimFac = 100;
        f.a->Text(Variant(1.5));
        QCOMPARE(EditOf(v, "txtA")->text(), QStringLiteral("150.00"));
        f.a->Caption("h");
        f.a->Dimension("m");
        auto* w = static_cast<QVTextBoxWidget*>(v.WidgetOf("txtA"));
        QCOMPARE(w->CaptionLabel()->text(), QStringLiteral("h"));
        QCOMPARE(w->DimensionLabel()->text(), QStringLiteral("m"));
        f.a->Enabled(false);
        QVERIFY(!w->isEnabled());
    }

    void okAndCancelRaiseTheirEvents() {
        frmProbe f;
        FormView v(f);
        v.show();
        auto* strip = static_cast<QVButtonsWidget*>(v.WidgetOf("QVButtons1"));
        QTest::mouseClick(strip->Ok(), Qt::LeftButton);
        QTest::mouseClick(strip->Cancel(), Qt::LeftButton);
        const std::vector<std::string> want = {"OnOk", "OnCancel"};
        QCOMPARE(Joined(f.log), Joined(want));
    }

    // The life of a form under the Qt platform: its view comes with Load,
    // a modal show ends when the model hides the form (OK) or unloads it
    // (Cancel), the model's focus shows in the view, and a form dropped
    // while its view is up leaves nothing that reaches for it.
    void formLifeUnderQtPlatform_data() {
        QTest::addColumn<bool>("ok");
        QTest::newRow("OK hides") << true;
        QTest::newRow("Cancel unloads") << false;
    }
    void formLifeUnderQtPlatform() {
        QFETCH(bool, ok);
        auto platform = std::make_shared<QtPlatform>();
        SetPlatform(platform);
        auto f = std::make_unique<frmProbe>();
        f->buttons->OnOk = [&] { f->Hide(); };
        f->buttons->OnCancel = [&] { f->Unload(); };
        f->Load();
        auto* view = qobject_cast<FormView*>(platform->DialogOf(*f));
        QVERIFY(view != nullptr);
        bool focusShown = false;
        WhenModal([&](QWidget* w) {
            f->SetFocus(*f->b);
            focusShown = w == view && view->focusWidget() == EditOf(*view, "txtB");
            auto* strip = static_cast<QVButtonsWidget*>(view->WidgetOf("QVButtons1"));
            QTest::mouseClick(ok ? strip->Ok() : strip->Cancel(), Qt::LeftButton);
        });
        f->Show();
        QVERIFY(focusShown);
        QVERIFY(!f->IsShown());
        QCOMPARE(f->IsLoaded(), ok);
        QCOMPARE(platform->DialogOf(*f) != nullptr, ok);
        QPointer<FormView> gone = view;
        if (ok) {
            view->show();
            f.reset();  // unloads from the destructor
            QVERIFY(gone && gone->IsDetached() && !gone->isVisible());
            QTest::keyClicks(EditOf(*gone, "txtA"), "12");
        }
        QTRY_VERIFY(gone.isNull());
        SetPlatform(nullptr);
    }
};

static Add<ControlWidgetsTest> add;

}  // namespace qvrl::qt::test

#include "test_ControlWidgets.moc"
