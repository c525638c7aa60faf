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
class QEventLoop;

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

// Forms get their view when they load (the one registered for their name,
// else the generic FormView) and lose it when they unload.
class QtPlatform : public Platform {
public:
    QtPlatform() = default;
    QtPlatform(const QtPlatform&) = delete;
    QtPlatform& operator=(const QtPlatform&) = delete;
    ~QtPlatform() override;

    int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) override;
    // Runs until the form is hidden (a view of a mere FormBase: until it closes).
    void ShowModal(FormBase& form) override;
    void DoEvents() override;
    void FocusNextControl(FormBase& form) override;
    int32_t TextWidth(const std::string& text) override;

    void LoadForm(FormBase& form) override;
    void UnloadForm(FormBase& form) override;
    void ShowModeless(FormBase& form) override;
    void HideForm(FormBase& form) override;
    void ActivateForm(FormBase& form) override;
    void SetFocus(FormBase& form, const std::string& controlKey, bool selectAll) override;
    int32_t TextWidthTwips(const std::string& text, const std::string& fontName, double fontSize) override;

    // The dialog of a loaded or shown form, else null.
    QWidget* DialogOf(const FormBase& form) const;

private:
    std::unique_ptr<QDialog> MakeView(FormBase& form) const;
    std::map<const FormBase*, QPointer<QDialog>> views_;
    std::map<const FormBase*, QPointer<QDialog>> shown_;
    std::map<const FormBase*, QEventLoop*> loops_;
};

}  // namespace qvrl::qt
