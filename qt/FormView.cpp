#include "FormView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QVBoxLayout>

#include "ControlWidgets.h"
#include "controls/QVButtons.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

bool IsField(ControlKind k) {
    return k == ControlKind::ComboBox || k == ControlKind::TextBox || k == ControlKind::ListView;
}

}  // namespace

FormView::FormView(Form& form, QWidget* parent) : QDialog(parent), form_(form) {
    setWindowTitle(QString::fromStdString(form.Caption()));
    caption_ = form.Observe([this] { setWindowTitle(QString::fromStdString(form_.Caption())); });
    auto* outer = new QVBoxLayout(this);
    QFormLayout* rows = new QFormLayout;
    outer->addLayout(rows);
    auto* strips = new QHBoxLayout;
    strips->addStretch(1);
    const auto controls = form.Controls();
    // The models carry no positions: controls stand in tab order, a label
    // beside the field after it, the labels after a bar on one line under
    // it, and a frame holds what follows it up to the next frame, button
    // strip or control that stands on the form. Every button strip goes to
    // the foot of the form.
    bool inFrame = false;
    for (size_t i = 0; i < controls.size(); ++i) {
        Control& c = *controls[i];
        if (c.Kind() == ControlKind::QVButtons) {
            strips->addWidget(MakeControlWidget(c, this), 0, Qt::AlignBottom);
            rows = new QFormLayout;
            outer->addLayout(rows);
            inFrame = false;
            continue;
        }
        if (c.Kind() == ControlKind::QVFrame) {
            auto* frame = static_cast<QGroupBox*>(MakeControlWidget(c, this));
            rows = new QFormLayout(frame);
            outer->addWidget(frame);
            inFrame = true;
            continue;
        }
        if (c.OnForm && inFrame) {
            rows = new QFormLayout;
            outer->addLayout(rows);
            inFrame = false;
        }
        QWidget* w = MakeControlWidget(c, this);
        if (c.Kind() == ControlKind::Label && i + 1 < controls.size() && IsField(controls[i + 1]->Kind())) {
            rows->addRow(w, MakeControlWidget(*controls[++i], this));
            continue;
        }
        rows->addRow(w);
        if (c.Kind() == ControlKind::ProgressBar) {
            auto* line = new QHBoxLayout;
            while (i + 1 < controls.size() && controls[i + 1]->Kind() == ControlKind::Label) {
                if (line->count() > 0) line->addStretch(1);
                line->addWidget(MakeControlWidget(*controls[++i], this));
            }
            if (line->count() > 0) rows->addRow(line);
            else delete line;
        }
    }
    outer->addStretch(1);
    if (strips->count() > 1) outer->addLayout(strips);
    else delete strips;
    focusWatch_ =
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { FocusChanged(now); });
}

void FormView::Detach() {
    detached_ = true;
    setProperty("qvrlDetached", true);
    disconnect(focusWatch_);
    caption_.Stop();
}

QWidget* FormView::WidgetOf(const std::string& key) const {
    return findChild<QWidget*>(QString::fromStdString(ControlKey(key, -1)));
}

void FormView::ShowFocus(const std::string& key, bool selectAll) {
    QWidget* w = WidgetOf(key);
    if (!w) return;
    handingOver_ = true;
    w->setFocus(Qt::OtherFocusReason);
    if (auto* edit = qobject_cast<QLineEdit*>(w->focusProxy() ? w->focusProxy() : w); edit && selectAll)
        edit->selectAll();
    handingOver_ = false;
}

void FormView::FocusChanged(QWidget* now) {
    if (detached_ || handingOver_ || !now || now->window() != this) return;
    Control* c = ControlOf(now);
    if (!c || c == form_.ActiveControl() || !c->TakesFocus()) return;
    handingOver_ = true;
    bool moved = false;
    try {
        moved = form_.SetFocus(*c);
    } catch (const RuntimeError& e) {
        QMessageBox::critical(this, QStringLiteral("QVRoofLoad"), QString::fromStdString(e.description()));
    }
    handingOver_ = false;
    // A failed validation keeps the focus where it was.
    if (!moved && form_.ActiveControl()) ShowFocus(form_.ActiveControl()->Key(), false);
}

void FormView::keyPressEvent(QKeyEvent* event) {
    if (detached_) return;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        try {
            form_.PressKey(key::Return);
        } catch (const RuntimeError& e) {
            QMessageBox::critical(this, QStringLiteral("QVRoofLoad"), QString::fromStdString(e.description()));
        }
        return;
    }
    QDialog::keyPressEvent(event);  // Escape ends in reject()
}

void FormView::Cancel() {
    if (detached_) return;
    try {
        if (form_.PressKey(key::Escape)) return;
        for (Control* c : form_.Controls())
            if (c->Kind() == ControlKind::QVButtons && c->Enabled() && c->Visible()) {
                static_cast<QVButtons*>(c)->Buttons(1).PerformClick();
                return;
            }
        form_.Hide();
    } catch (const RuntimeError& e) {
        QMessageBox::critical(this, QStringLiteral("QVRoofLoad"), QString::fromStdString(e.description()));
    }
}

// The dialog closes when the model hides it, never by itself.
void FormView::reject() { Cancel(); }

void FormView::closeEvent(QCloseEvent* event) {
    event->ignore();
    Cancel();
}

}  // namespace qvrl::qt
