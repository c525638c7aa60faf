#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "QtPlatform.h"
#include "qvroofload.h"
#include "QtTests.h"
#include "support/DesktopPlatform.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl::qt::test {

namespace {

struct NamedForm : FormBase {
    std::string name;
    explicit NamedForm(std::string n) : name(std::move(n)) {}
    std::string FormName() const override { return name; }
};

}  // namespace

class QtPlatformTest : public QObject {
    Q_OBJECT
private slots:
    void messageBoxAnswers_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("press");
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("icon");
        using B = QMessageBox;
        QTest::newRow("OKOnly") << 0 << int(B::Ok) << 1 << int(mb::OK) << int(B::NoIcon);
        QTest::newRow("OKCancel Cancel") << (mb::OKCancel | mb::Exclamation) << int(B::Cancel) << 2 << int(mb::Cancel)
                                         << int(B::Warning);
        QTest::newRow("YesNo No") << (mb::YesNo | mb::Question) << int(B::No) << 2 << int(mb::No) << int(B::Question);
        QTest::newRow("YesNoCancel Yes") << (mb::YesNoCancel | mb::Critical) << int(B::Yes) << 3 << int(mb::Yes)
                                         << int(B::Critical);
        QTest::newRow("AbortRetryIgnore Ignore") << mb::AbortRetryIgnore << int(B::Ignore) << 3 << int(mb::Ignore)
                                                 << int(B::NoIcon);
        QTest::newRow("RetryCancel Retry") << (mb::RetryCancel | mb::Information) << int(B::Retry) << 2
                                           << int(mb::Retry) << int(B::Information);
        // Escape answers as the last button: Cancel, else No, else OK.
        QTest::newRow("YesNo Escape") << mb::YesNo << -1 << 2 << int(mb::No) << int(B::NoIcon);
        QTest::newRow("OKCancel Escape") << mb::OKCancel << -1 << 2 << int(mb::Cancel) << int(B::NoIcon);
    }
    void messageBoxAnswers() {
        QFETCH(int, flags);
        QFETCH(int, press);
        QFETCH(int, buttons);
        QFETCH(int, answer);
        QFETCH(int, icon);
        QtPlatform p;
        QString seenText, seenTitle;
        int seenButtons = -1, seenIcon = -1;
        WhenModal([&](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            if (!box) return;
            seenText = box->text();
            seenTitle = box->windowTitle();
            seenButtons = static_cast<int>(box->buttons().size());
            seenIcon = box->icon();
            if (press < 0)
                QTest::keyClick(box, Qt::Key_Escape);
            else
                QTest::mouseClick(box->button(static_cast<QMessageBox::StandardButton>(press)), Qt::LeftButton);
        });
        QCOMPARE(p.MsgBox("Höhe über 1000 m", flags, "Schnee"), answer);
        QCOMPARE(seenText, QString::fromUtf8("Höhe über 1000 m"));
        QCOMPARE(seenTitle, QStringLiteral("Schnee"));
        QCOMPARE(seenButtons, buttons);
        QCOMPARE(seenIcon, icon);
    }

    void secondButtonAsDefault() {
        QtPlatform p;
        bool noIsDefault = false;
        WhenModal([&](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            noIsDefault = box && box->defaultButton() == box->button(QMessageBox::No);
            QTest::keyClick(box, Qt::Key_Return);
        });
        QCOMPARE(p.MsgBox("?", mb::YesNo | 256, ""), mb::No);
        QVERIFY(noIsDefault);
    }

    void unknownFormIsAnError() {
        QtPlatform p;
        NamedForm f("frmNowhere");
        try {
            p.ShowModal(f);
            QFAIL("no error");
        } catch (const RuntimeError& e) {
            QCOMPARE(e.number(), err::InvalidCall);
            QVERIFY(e.description().find("frmNowhere") != std::string::npos);
        }
    }

    // A registered view is shown modally, the platform knows it while it is
    // up, and {TAB} moves through its boxes and skips hidden ones.
    void modalShowAndFocus() {
        QLineEdit *a = nullptr, *hidden = nullptr, *b = nullptr;
        RegisterView("frmTwoBoxes", [&](FormBase&) {
            auto d = std::make_unique<QDialog>();
            auto* l = new QVBoxLayout(d.get());
            l->addWidget(a = new QLineEdit);
            l->addWidget(hidden = new QLineEdit);
            l->addWidget(b = new QLineEdit);
            hidden->hide();
            return d;
        });
        QtPlatform p;
        NamedForm f("frmTwoBoxes");
        bool knownWhileShown = false, startsOnA = false, tabReachesB = false;
        WhenModal([&](QWidget* w) {
            knownWhileShown = p.DialogOf(f) == w;
            a->setFocus();
            startsOnA = w->focusWidget() == a;
            p.FocusNextControl(f);
            tabReachesB = w->focusWidget() == b;
            static_cast<QDialog*>(w)->accept();
        });
        p.ShowModal(f);
        QVERIFY(knownWhileShown);
        QVERIFY(startsOnA);
        QVERIFY(tabReachesB);
        QVERIFY(p.DialogOf(f) == nullptr);
    }

    void textWidthAndTwips() {
        QtPlatform p;
        QCOMPARE(p.TextWidth(""), 0);
        QVERIFY(p.TextWidth("WWWW") > p.TextWidth("iiii"));
        QVERIFY(p.TextWidth("Schneelast") > 0);
        QCOMPARE(TwipsToPixels(0), 0);
        QCOMPARE(TwipsToPixels(PixelsToTwips(123)), 123);
    }

    // The roads a host takes: the core, and the C API over it, load the
    // dialog library by name.
    void hostsLoadTheQtPlatform_data() {
        QTest::addColumn<bool>("throughC");
        QTest::newRow("core") << false;
        QTest::newRow("C API") << true;
    }
    void hostsLoadTheQtPlatform() {
        QFETCH(bool, throughC);
        ResetModuleState();
        QVERIFY(dynamic_cast<QtPlatform*>(&CurrentPlatform()) == nullptr);
        if (throughC) QCOMPARE(qvrl_use_qt_dialogs(), 0u);
        else UseDesktopPlatform();
        QVERIFY(dynamic_cast<QtPlatform*>(&CurrentPlatform()) != nullptr);
        ResetModuleState();
    }
};

static Add<QtPlatformTest> add;

}  // namespace qvrl::qt::test

#include "test_QtPlatform.moc"
