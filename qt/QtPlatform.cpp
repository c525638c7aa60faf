#include "QtPlatform.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QFontMetricsF>
#include <QFontMetrics>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <cmath>
#include <vector>

#include "FormView.h"
#include "controls/Form.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

std::map<std::string, ViewFactory>& Views() {
    static std::map<std::string, ViewFactory> views;
    return views;
}

double Dpi() {
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->logicalDotsPerInchX() : 96.0;
}

struct ButtonAnswer {
    QMessageBox::StandardButton button;
    int32_t answer;
};

std::vector<ButtonAnswer> ButtonsOf(int32_t flags) {
    using B = QMessageBox;
    switch (flags & 7) {
    case mb::OKCancel: return {{B::Ok, mb::OK}, {B::Cancel, mb::Cancel}};
    case mb::AbortRetryIgnore: return {{B::Abort, mb::Abort}, {B::Retry, mb::Retry}, {B::Ignore, mb::Ignore}};
    case mb::YesNoCancel: return {{B::Yes, mb::Yes}, {B::No, mb::No}, {B::Cancel, mb::Cancel}};
    case mb::YesNo: return {{B::Yes, mb::Yes}, {B::No, mb::No}};
    case mb::RetryCancel: return {{B::Retry, mb::Retry}, {B::Cancel, mb::Cancel}};
    default: return {{B::Ok, mb::OK}};
    }
}

QMessageBox::Icon IconOf(int32_t flags) {
    switch (flags & 0x70) {
    case mb::Critical: return QMessageBox::Critical;
    case mb::Question: return QMessageBox::Question;
    case mb::Exclamation: return QMessageBox::Warning;
    case mb::Information: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

}  // namespace

void RegisterView(const std::string& formName, ViewFactory factory) { Views()[formName] = std::move(factory); }

const ViewFactory* FindView(const std::string& formName) {
    const auto it = Views().find(formName);
    return it == Views().end() ? nullptr : &it->second;
}

int TwipsToPixels(double twips) { return static_cast<int>(std::lround(twips * Dpi() / 1440.0)); }
double PixelsToTwips(int pixels) { return pixels * 1440.0 / Dpi(); }

int32_t QtPlatform::MsgBox(const std::string& text, int32_t flags, const std::string& title) {
    QMessageBox box(IconOf(flags), QString::fromStdString(title.empty() ? "QVRoofLoad" : title),
                    QString::fromStdString(text), QMessageBox::NoButton, QApplication::activeWindow());
    const auto buttons = ButtonsOf(flags);
    for (const auto& b : buttons) box.addButton(b.button);
    // Basic's flags 256/512 make the second or third button the default.
    const size_t def = static_cast<size_t>((flags >> 8) & 3);
    box.setDefaultButton(buttons[def < buttons.size() ? def : 0].button);
    // Closing the box answers as its Cancel (or only) button would.
    box.setEscapeButton(box.button(buttons.back().button));
    box.exec();
    QAbstractButton* clicked = box.clickedButton();
    for (const auto& b : buttons)
        if (clicked == box.button(b.button)) return b.answer;
    return buttons.back().answer;
}

QtPlatform::~QtPlatform() {
    // Without an application the widgets are gone with it (or cannot go).
    if (!QCoreApplication::instance()) return;
    for (auto& [form, view] : views_) delete view.data();
}

std::unique_ptr<QDialog> QtPlatform::MakeView(FormBase& form) const {
    if (const ViewFactory* factory = FindView(form.FormName())) return (*factory)(form);
    if (auto* model = dynamic_cast<Form*>(&form)) return std::make_unique<FormView>(*model);
    Raise(err::InvalidCall, "QtPlatform", "no dialog is built for the form " + form.FormName());
}

void QtPlatform::LoadForm(FormBase& form) {
    if (views_.count(&form)) return;
    views_[&form] = MakeView(form).release();
}

void QtPlatform::UnloadForm(FormBase& form) {
    // May come from the form's destructor: its address is all there is.
    const auto it = views_.find(&form);
    if (it == views_.end()) return;
    QPointer<QDialog> view = it->second;
    views_.erase(it);
    if (const auto loop = loops_.find(&form); loop != loops_.end()) loop->second->quit();
    if (!view) return;
    if (auto* fv = qobject_cast<FormView*>(view.data())) fv->Detach();
    view->hide();
    // The unload may run inside a handler of one of the view's own widgets.
    view->deleteLater();
}

void QtPlatform::ShowModal(FormBase& form) {
    std::unique_ptr<QDialog> own;
    QPointer<QDialog> dialog;
    if (const auto it = views_.find(&form); it != views_.end() && it->second) dialog = it->second;
    else {
        own = MakeView(form);
        dialog = own.get();
    }
    const bool isForm = dynamic_cast<Form*>(&form) != nullptr;
    QEventLoop loop;
    QEventLoop* outer = loops_.count(&form) ? loops_[&form] : nullptr;
    loops_[&form] = &loop;
    shown_[&form] = dialog;
    struct Forget {
        QtPlatform& p;
        const FormBase* form;
        QEventLoop* outer;
        ~Forget() {
            p.shown_.erase(form);
            if (outer) p.loops_[form] = outer;
            else p.loops_.erase(form);
        }
    } forget{*this, &form, outer};
    const auto finished = QObject::connect(dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
    ActivateForm(form);
    // A form may hide itself while it activates: then there is nothing to wait for.
    while (dialog && dialog->isVisible() && (!isForm || form.IsShown())) loop.exec();
    if (dialog) {
        QObject::disconnect(finished);
        dialog->hide();
        dialog->setWindowModality(Qt::NonModal);
    }
}

void QtPlatform::ShowModeless(FormBase& form) {
    if (!views_.count(&form) || !views_[&form]) LoadForm(form);
    QDialog* dialog = views_[&form];
    dialog->setWindowModality(Qt::NonModal);
    dialog->show();
    ActivateForm(form);
}

void QtPlatform::HideForm(FormBase& form) {
    if (const auto loop = loops_.find(&form); loop != loops_.end()) loop->second->quit();
    if (QWidget* w = DialogOf(form)) w->hide();
}

void QtPlatform::ActivateForm(FormBase& form) {
    if (QWidget* w = DialogOf(form)) {
        w->raise();
        w->activateWindow();
    }
    form.RaiseActivate();
}

void QtPlatform::SetFocus(FormBase& form, const std::string& controlKey, bool selectAll) {
    if (auto* view = qobject_cast<FormView*>(DialogOf(form))) view->ShowFocus(controlKey, selectAll);
}

int32_t QtPlatform::TextWidthTwips(const std::string& text, const std::string& fontName, double fontSize) {
    QFont font(QString::fromStdString(fontName));
    if (fontSize > 0) font.setPointSizeF(fontSize);
    const double pixels = QFontMetricsF(font).horizontalAdvance(QString::fromStdString(text));
    return static_cast<int32_t>(std::lround(pixels * 1440.0 / Dpi()));
}

void QtPlatform::DoEvents() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

void QtPlatform::FocusNextControl(FormBase& form) {
    QWidget* dialog = DialogOf(form);
    QWidget* from = dialog ? dialog->focusWidget() : nullptr;
    if (!from) return;
    QWidget* next = from->nextInFocusChain();
    // Skip what cannot take the focus by Tab, as the key itself would.
    while (next && next != from && (!(next->focusPolicy() & Qt::TabFocus) || !next->isVisible() || !next->isEnabled()))
        next = next->nextInFocusChain();
    if (next && next != from) next->setFocus(Qt::TabFocusReason);
}

int32_t QtPlatform::TextWidth(const std::string& text) {
    return QFontMetrics(QApplication::font()).horizontalAdvance(QString::fromStdString(text));
}

QWidget* QtPlatform::DialogOf(const FormBase& form) const {
    if (const auto it = shown_.find(&form); it != shown_.end() && it->second) return it->second.data();
    const auto it = views_.find(&form);
    return it == views_.end() ? nullptr : it->second.data();
}

}  // namespace qvrl::qt
