#pragma once
// The base of every dialog form model: its controls by name, the focus and
// its validation, the flags of the dialog conventions, and the life of the
// form (load, modal show, hide, activate, unload) through the Platform.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/Control.h"
#include "support/Platform.h"

namespace qvrl {

namespace err {
// A control is added twice under one name and index.
inline constexpr int32_t ControlArrayElementExists = 360;
inline constexpr int32_t InvalidPropertyValue = 380;
inline constexpr int32_t InvalidPropertyArrayIndex = 381;
// A property that may only be set at design time.
inline constexpr int32_t SetNotPermitted = 393;
// A control that cannot take the focus (hidden or disabled).
inline constexpr int32_t InvalidFocus = 5;
}  // namespace err

class Form : public FormBase {
public:
    Form() = default;
    // A form dropped while loaded is unloaded for the platform, so that no
    // view outlives its model.
    ~Form() override;

    std::string FormName() const override = 0;
    bool IsShown() const override { return shown_; }
    void RaiseActivate() override { Form_Activate(); }

    // Properties of the dialog conventions.
    bool Updating = false;
    bool Accepted = false;
    bool SwitchNorm = false;

    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) {
        if (v == caption_) return;
        caption_ = v;
        observers_.Notify();
    }
    // A view subscribes here for changes of the form's own properties.
    [[nodiscard]] Observers::Subscription Observe(std::function<void()> observer) {
        return observers_.Add(std::move(observer));
    }

    // Members every dialog form has.
    virtual void Init_Me() {}
    virtual void UpdateData(bool /*toData*/, const std::string& /*controlName*/) {}
    virtual void Localize() {}

    // The control of that key ("txtWind(0)", "cmdOk"), case-blind; null when
    // there is none.
    Control* Find(const std::string& key) const;
    // As Find, but error 9 naming the key when there is none, and of the type asked.
    template <class T>
    T& Get(const std::string& key) const {
        auto* c = dynamic_cast<T*>(Require(key));
        if (!c) RaiseWrongKind(key);
        return *c;
    }
    // All controls in tab order (the order they were added).
    std::vector<Control*> Controls() const;

    // Life of the form. Load is implicit in the others; Show shows modally and
    // returns when the form is hidden or unloaded.
    void Load();
    void Show();
    // Shown without waiting; the caller goes on working.
    void ShowModeless();
    void Hide();
    void Unload();
    bool IsLoaded() const { return loaded_; }

    // Focus. SetFocus validates the control left (when the new one causes
    // validation) and returns false, leaving the focus, when that fails.
    Control* ActiveControl() const { return active_; }
    bool SetFocus(Control& c);
    // "{TAB}": to the next control that can take the focus.
    bool SendTab();
    // Enter presses the Default button, Escape the Cancel button; without such
    // a button the focused control gets the key. Up and Down go to the focused
    // control. Returns whether anything took the key.
    bool PressKey(int16_t keyCode);

    // Layout size in twips, for views.
    int32_t Width = 0;
    int32_t Height = 0;

protected:
    // Adds a control owned by the form, in tab order.
    template <class T, class... A>
    T& Add(const std::string& name, int16_t index = -1, A&&... args) {
        auto c = std::make_unique<T>(name, index, std::forward<A>(args)...);
        T& ref = *c;
        Adopt(std::move(c));
        return ref;
    }
    void Adopt(std::unique_ptr<Control> c);
    Platform& platform() const;
    // Dialogs see every key first: Enter moves on as Tab does (unless
    // onReturn takes it for its control), Escape cancels, whichever control
    // has the focus. Call after the last control is added.
    void EnterTabsEscapeCancels(std::function<void()> cancel,
                                std::function<bool(Control&)> onReturn = {});
    // OK and Cancel of the load dialogs: OK reads every box back and
    // accepts, Cancel keeps the properties as they were; both hide the form,
    // which ends its modal show. Neither acts while the form fills its
    // controls.
    void AcceptAndHide();
    void CancelAndHide();

    // Form events; Form_Load localizes by default.
    virtual void Form_Load() { Localize(); }
    virtual void Form_Activate() {}
    virtual void Form_Unload() {}

private:
    Control* Require(const std::string& key) const;
    [[noreturn]] void RaiseWrongKind(const std::string& key) const;
    std::vector<std::unique_ptr<Control>> controls_;
    std::map<std::string, Control*> byKey_;
    Control* active_ = nullptr;
    std::string caption_;
    Observers observers_;
    bool loaded_ = false;
    bool shown_ = false;
};

// A key text such as "txtWind(0)" in the canonical case-blind form.
std::string ControlKey(const std::string& name, int16_t index);

}  // namespace qvrl
