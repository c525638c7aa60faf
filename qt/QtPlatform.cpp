#include "QtPlatform.h"

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <cmath>
#include <vector>

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

void QtPlatform::ShowModal(FormBase& form) {
    const std::string name = form.FormName();
    const ViewFactory* factory = FindView(name);
    if (!factory) Raise(err::InvalidCall, "QtPlatform", "no dialog is built for the form " + name);
    std::unique_ptr<QDialog> dialog = (*factory)(form);
    shown_[&form] = dialog.get();
    struct Forget {
        std::map<const FormBase*, QPointer<QWidget>>& shown;
        const FormBase* form;
        ~Forget() { shown.erase(form); }
    } forget{shown_, &form};
    dialog->exec();
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
    const auto it = shown_.find(&form);
    return it == shown_.end() ? nullptr : it->second.data();
}

}  // namespace qvrl::qt
