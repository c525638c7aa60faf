#pragma once
// What the logic needs of a user interface, behind one interface. The core
// never calls a GUI; the Qt adapter and the headless one implement this.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qvrl {

// Message box flags and answers, as Basic numbers them.
namespace mb {
inline constexpr int32_t OKOnly = 0;
inline constexpr int32_t OKCancel = 1;
inline constexpr int32_t AbortRetryIgnore = 2;
inline constexpr int32_t YesNoCancel = 3;
inline constexpr int32_t YesNo = 4;
inline constexpr int32_t RetryCancel = 5;
inline constexpr int32_t Critical = 16;
inline constexpr int32_t Question = 32;
inline constexpr int32_t Exclamation = 48;
inline constexpr int32_t Information = 64;

inline constexpr int32_t OK = 1;
inline constexpr int32_t Cancel = 2;
inline constexpr int32_t Abort = 3;
inline constexpr int32_t Retry = 4;
inline constexpr int32_t Ignore = 5;
inline constexpr int32_t Yes = 6;
inline constexpr int32_t No = 7;

// The answer of the first button of a flag set.
int32_t DefaultAnswer(int32_t flags);
}  // namespace mb

// A dialog form model as the platform sees it: something with a name that
// can be shown modally.
class FormBase {
public:
    virtual ~FormBase() = default;
    virtual std::string FormName() const = 0;
    // Whether the form is shown; a modal show ends when this turns false.
    virtual bool IsShown() const { return false; }
    // Raised by the platform when the form becomes the active window.
    virtual void RaiseActivate() {}
};

// Twips per pixel at the 96 dots per inch the dialogs are designed for.
inline constexpr int32_t TwipsPerPixel = 15;

class Platform {
public:
    virtual ~Platform() = default;
    // Returns the answer (mb::OK, mb::Yes, ...).
    virtual int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) = 0;
    // Shows the form modally; returns when it is hidden or unloaded.
    virtual void ShowModal(FormBase& form) = 0;
    // Lets pending user-interface events run.
    virtual void DoEvents() = 0;
    // Moves the focus to the next control of the form ("{TAB}").
    virtual void FocusNextControl(FormBase& form) = 0;
    // Width of a text in pixels in the form's font.
    virtual int32_t TextWidth(const std::string& text) = 0;

    // The form model has loaded (before Form_Load) or is unloaded for good;
    // a view is built or destroyed here. UnloadForm also comes from the
    // form's destructor: use the form's address only, not its members.
    virtual void LoadForm(FormBase&) {}
    virtual void UnloadForm(FormBase&) {}
    // A form shown without waiting (a progress window); it stays until hidden.
    virtual void ShowModeless(FormBase&) {}
    // The form hid itself; a modal show of it returns.
    virtual void HideForm(FormBase&) {}
    // The form is brought to the front and made the active window.
    virtual void ActivateForm(FormBase& form) { form.RaiseActivate(); }
    // The model moved the focus to a control (a key such as "txtWind(0)"),
    // with all of its text selected when selectAll is set.
    virtual void SetFocus(FormBase&, const std::string& /*controlKey*/, bool /*selectAll*/) {}
    // Width of a text in twips, in the named font; the dialogs' widths are twips.
    virtual int32_t TextWidthTwips(const std::string& text, const std::string& /*fontName*/, double /*fontSize*/) {
        return TextWidth(text) * TwipsPerPixel;
    }
};

// The platform of tests and of hosts without a screen: message boxes are
// recorded and answered with a preset answer, forms are shown by calling the
// handler registered for their name.
class HeadlessPlatform : public Platform {
public:
    struct Message {
        std::string text;
        int32_t flags;
        std::string title;
    };
    using FormHandler = std::function<void(FormBase&)>;

    int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) override;
    void ShowModal(FormBase& form) override;
    void DoEvents() override { ++doEvents_; }
    void FocusNextControl(FormBase& form) override { focusMoves_.push_back(form.FormName()); }
    int32_t TextWidth(const std::string& text) override;
    void SetFocus(FormBase& form, const std::string& controlKey, bool selectAll) override;

    // Answers given in order; when none is queued the first button answers.
    void QueueAnswer(int32_t answer) { answers_.push_back(answer); }
    void OnShow(const std::string& formName, FormHandler handler) { handlers_[formName] = std::move(handler); }

    const std::vector<Message>& Messages() const { return messages_; }
    const std::vector<std::string>& ShownForms() const { return shown_; }
    // "frmX" for a move by {TAB}, "frmX.txtA(0)" (and " selected") for one to a control.
    const std::vector<std::string>& FocusMoves() const { return focusMoves_; }
    int32_t DoEventsCount() const { return doEvents_; }
    void Clear();

private:
    std::vector<Message> messages_;
    std::vector<int32_t> answers_;
    std::map<std::string, FormHandler> handlers_;
    std::vector<std::string> shown_;
    std::vector<std::string> focusMoves_;
    int32_t doEvents_ = 0;
};

}  // namespace qvrl
