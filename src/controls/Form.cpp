#include "controls/Form.h"

#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

std::string ControlKey(const std::string& name, int16_t index) {
    return UCase(index < 0 ? name : name + "(" + std::to_string(index) + ")");
}

Platform& Form::platform() const { return CurrentPlatform(); }

Form::~Form() {
    if (loaded_) platform().UnloadForm(*this);
}

void Form::Adopt(std::unique_ptr<Control> c) {
    const std::string key = ControlKey(c->Name(), c->Index());
    if (byKey_.count(key)) Raise(err::ControlArrayElementExists, FormName(), "two controls named " + c->Key());
    c->form_ = this;
    byKey_[key] = c.get();
    controls_.push_back(std::move(c));
}

Control* Form::Find(const std::string& key) const {
    // "txtWind( 0 )" and "TXTWIND(0)" name the same element.
    std::string k;
    for (char ch : key)
        if (ch != ' ') k += ch;
    const auto it = byKey_.find(UCase(k));
    return it == byKey_.end() ? nullptr : it->second;
}

Control* Form::Require(const std::string& key) const {
    Control* c = Find(key);
    if (!c) Raise(err::SubscriptOutOfRange, FormName(), FormName() + " has no control '" + key + "'");
    return c;
}

void Form::RaiseWrongKind(const std::string& key) const {
    Raise(err::TypeMismatch, FormName(), "control '" + key + "' of " + FormName() + " is of another kind");
}

std::vector<Control*> Form::Controls() const {
    std::vector<Control*> r;
    r.reserve(controls_.size());
    for (const auto& c : controls_) r.push_back(c.get());
    return r;
}

void Form::Load() {
    if (loaded_) return;
    loaded_ = true;
    platform().LoadForm(*this);
    Form_Load();
}

void Form::Show() {
    Load();
    shown_ = true;
    platform().ShowModal(*this);
    shown_ = false;
}

void Form::ShowModeless() {
    Load();
    shown_ = true;
    platform().ShowModeless(*this);
}

void Form::Hide() {
    if (!shown_) return;
    shown_ = false;
    platform().HideForm(*this);
}

void Form::Unload() {
    if (!loaded_) return;
    Form_Unload();
    Hide();
    loaded_ = false;
    if (active_) active_->focus_ = false;
    active_ = nullptr;
    platform().UnloadForm(*this);
}

bool Form::SetFocus(Control& c) {
    if (c.form_ != this) Raise(err::InvalidFocus, FormName(), c.Key() + " is not a control of " + FormName());
    if (!c.TakesFocus() || !c.Enabled() || !c.Visible())
        Raise(err::InvalidFocus, FormName(), c.Key() + " cannot take the focus");
    if (active_ && active_ != &c) {
        if (!active_->MayLeave(c.CausesValidation())) return false;
        // The handler of the validation may have moved the focus itself.
        if (active_ && active_ != &c) {
            Control* old = active_;
            old->focus_ = false;
            active_ = nullptr;
            old->LostFocus();
        }
    }
    active_ = &c;
    c.focus_ = true;
    const bool selected = c.FocusArrived();
    platform().SetFocus(*this, c.Key(), selected);
    c.GotFocus();
    return true;
}

void Form::AcceptAndHide() {
    if (Updating) return;
    UpdateData(true, "");
    Accepted = true;
    Hide();
}

void Form::CancelAndHide() {
    if (Updating) return;
    Accepted = false;
    Hide();
}

void Form::EnterTabsEscapeCancels(std::function<void()> cancel, std::function<bool(Control&)> onReturn) {
    for (Control* c : Controls())
        c->KeyDown = [this, c, cancel, onReturn](int16_t& k, int16_t) {
            if (k == key::Return) {
                k = 0;
                if (!onReturn || !onReturn(*c)) SendTab();
            } else if (k == key::Escape) {
                k = 0;
                cancel();
            }
        };
}

bool Form::SendTab() {
    if (controls_.empty()) return false;
    size_t start = 0;
    for (size_t i = 0; i < controls_.size(); ++i)
        if (controls_[i].get() == active_) start = i + 1;
    for (size_t n = 0; n < controls_.size(); ++n) {
        Control& c = *controls_[(start + n) % controls_.size()];
        if (c.TakesFocus() && c.Enabled() && c.Visible()) {
            if (&c == active_) return true;
            return SetFocus(c);
        }
    }
    return false;
}

bool Form::PressKey(int16_t keyCode) {
    if (keyCode == key::Tab) return SendTab();
    if (keyCode == key::Return || keyCode == key::Escape) {
        for (const auto& c : controls_) {
            auto* b = dynamic_cast<CommandButton*>(c.get());
            if (b && b->Enabled() && b->Visible() && (keyCode == key::Return ? b->Default : b->Cancel)) {
                b->PerformClick();
                return true;
            }
        }
    }
    if (!active_) return false;
    return active_->SendKey(keyCode);
}

}  // namespace qvrl
