#pragma once
// The platform of a person at a desk: real message boxes, forms shown as
// modal Qt dialogs built by the view registered for their name.

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "support/Platform.h"

class QDialog;

namespace qvrl::qt {

// Builds the dialog of one form model. The dialog must close when the model
// hides or unloads the form.
using ViewFactory = std::function<std::unique_ptr<QDialog>(FormBase& form)>;

// Views by form name. Each view file registers itself.
void RegisterView(const std::string& formName, ViewFactory factory);
const ViewFactory* FindView(const std::string& formName);

// Twips (1/1440 inch) to pixels and back at the screen's resolution.
int TwipsToPixels(double twips);
double PixelsToTwips(int pixels);

class QtPlatform : public Platform {
public:
    int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) override;
    void ShowModal(FormBase& form) override;
    void DoEvents() override;
    void FocusNextControl(FormBase& form) override;
    int32_t TextWidth(const std::string& text) override;

    // The dialog showing a form, if it is shown.
    QWidget* DialogOf(const FormBase& form) const;

private:
    std::map<const FormBase*, QPointer<QWidget>> shown_;
};

}  // namespace qvrl::qt
