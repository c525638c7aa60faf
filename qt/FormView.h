#pragma once
// The generic view of a form model: one widget per control in tab order,
// the focus handed to the model (which validates the control left), Enter
// and Escape as the form's keys, and closing the window as Cancel.

#include <QDialog>

#include "controls/Form.h"

namespace qvrl::qt {

class FormView : public QDialog {
    Q_OBJECT
public:
    explicit FormView(Form& form, QWidget* parent = nullptr);
    // Focus moves while QDialog tears the widgets down must not reach here.
    ~FormView() override { disconnect(focusWatch_); }
    Form& Model() const { return form_; }
    // The widget of a control key ("TXTWIND(0)"), or null.
    QWidget* WidgetOf(const std::string& controlKey) const;
    // Moves the widget focus without telling the model (the model moved it).
    void ShowFocus(const std::string& controlKey, bool selectAll);
    // The form is unloaded: from now on the view hands nothing to it, so
    // that it may go later than its model (deleteLater).
    void Detach();
    bool IsDetached() const { return detached_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

private:
    void FocusChanged(QWidget* now);
    void Cancel();
    Form& form_;
    Observers::Subscription caption_;
    QMetaObject::Connection focusWatch_;
    bool handingOver_ = false;
    bool detached_ = false;
};

}  // namespace qvrl::qt
