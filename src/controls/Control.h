#pragma once
// The controls of a dialog form as plain models. A view (qt/) observes a
// control and forwards user actions to its action members (Click, TypeText,
// ...); a form's logic connects to its events. Changing a control from code
// raises its events as a Windows form would, so handlers check Updating.

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "controls/Observers.h"

namespace qvrl {

class Form;

// OLE colours: 0x80000000 | n is the system colour n.
namespace colour {
inline constexpr uint32_t Window = 0x80000005;
inline constexpr uint32_t WindowText = 0x80000008;
inline constexpr uint32_t ButtonFace = 0x8000000F;
inline constexpr uint32_t ButtonText = 0x80000012;
inline constexpr uint32_t Red = 0x000000FF;
}  // namespace colour

// Key codes and characters as the form's key events carry them.
namespace key {
// The key code of a typed character: letters by their capital.
int16_t CodeOf(const std::string& ch);
inline constexpr int16_t Back = 8;
inline constexpr int16_t Tab = 9;
inline constexpr int16_t Return = 13;
inline constexpr int16_t Escape = 27;
inline constexpr int16_t Up = 38;
inline constexpr int16_t Down = 40;
}  // namespace key

// One handler, connected by the form; raising an unconnected event does nothing.
template <class... Args>
class Event {
public:
    Event& operator=(std::function<void(Args...)> handler) {
        handler_ = std::move(handler);
        return *this;
    }
    void operator()(Args... args) const {
        if (handler_) handler_(args...);
    }
    explicit operator bool() const { return static_cast<bool>(handler_); }

private:
    std::function<void(Args...)> handler_;
};

enum class ControlKind {
    Label,
    CommandButton,
    CheckBox,
    OptionButton,
    ComboBox,
    ListView,
    Image,
    TextBox,
    ProgressBar,
    QVTextBox,
    QVButtons,
    QVLabel,
    QVFrame,
};

class Control {
public:
    explicit Control(std::string name, int16_t index = -1) : name_(std::move(name)), index_(index) {}
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    virtual ControlKind Kind() const = 0;
    const std::string& Name() const { return name_; }
    // Element of a control array, -1 for a single control.
    int16_t Index() const { return index_; }
    // "txtWind(0)", or the name alone.
    std::string Key() const;
    Form* Parent() const { return form_; }

    bool Enabled() const { return enabled_; }
    void Enabled(bool v) { Set(enabled_, v); }
    bool Visible() const { return visible_; }
    void Visible(bool v) { Set(visible_, v); }
    uint32_t BackColor() const { return backColor_; }
    void BackColor(uint32_t v) { Set(backColor_, v); }
    uint32_t ForeColor() const { return foreColor_; }
    void ForeColor(uint32_t v) { Set(foreColor_, v); }
    const std::string& ToolTipText() const { return toolTip_; }
    void ToolTipText(const std::string& v) { Set(toolTip_, v); }
    // Whether entering this control validates the one left.
    bool CausesValidation() const { return causesValidation_; }
    void CausesValidation(bool v) { Set(causesValidation_, v); }
    // Free text a form keeps with the control.
    std::string Tag;
    // The models carry no positions and a view puts a control into the frame
    // before it; this one stands on the form instead, so that hiding that
    // frame does not hide it too.
    bool OnForm = false;

    // Whether the control can take the focus at all (enabled and visible are
    // checked apart).
    virtual bool TakesFocus() const { return false; }
    bool HasFocus() const { return focus_; }

    // A key pressed and released while the control has the focus (Return,
    // Escape, Up, Down): KeyDown, the control's own handling, KeyUp. Returns
    // whether the control took it.
    bool SendKey(int16_t keyCode);

    // A view subscribes here; every change of what it shows notifies it
    // until the subscription is dropped.
    [[nodiscard]] Observers::Subscription Observe(std::function<void()> observer) {
        return observers_.Add(std::move(observer));
    }

    Event<> GotFocus;
    Event<> LostFocus;
    // Key code (by reference: 0 drops the key) and shift state.
    Event<int16_t&, int16_t> KeyDown;
    Event<int16_t&, int16_t> KeyUp;

protected:
    template <class T, class U>
    void Set(T& field, U&& v) {
        if (field == v) return;
        field = std::forward<U>(v);
        Notify();
    }
    void Notify() const { observers_.Notify(); }
    // Focus arrives (after the form set it): returns whether all text is now
    // selected. Leaving returns false to keep the focus (a failed validation).
    virtual bool FocusArrived() { return false; }
    virtual bool MayLeave(bool /*validates*/) { return true; }
    // A key the form hands to the focused control (Return, Escape, Up,
    // Down); returns whether the control took it.
    virtual bool HandleKey(int16_t /*keyCode*/) { return false; }

private:
    friend class Form;
    std::string name_;
    int16_t index_;
    Form* form_ = nullptr;
    bool focus_ = false;
    bool enabled_ = true;
    bool visible_ = true;
    bool causesValidation_ = true;
    uint32_t backColor_ = colour::ButtonFace;
    uint32_t foreColor_ = colour::ButtonText;
    std::string toolTip_;
    Observers observers_;
};

// Something the user can press: a button, a check box, an option, a label.
class Clickable : public Control {
public:
    using Control::Control;
    // A click by the user (or by code, as Basic's Value = True).
    virtual void PerformClick() { Click(); }
    Event<> Click;
    Event<> DblClick;
};

class Label : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::Label; }
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) { Set(caption_, v); }
    bool FontBold() const { return bold_; }
    void FontBold(bool v) { Set(bold_, v); }

private:
    std::string caption_;
    bool bold_ = false;
};

class CommandButton : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::CommandButton; }
    bool TakesFocus() const override { return true; }
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) { Set(caption_, v); }
    // Enter presses the Default button of a form, Escape its Cancel button.
    bool Default = false;
    bool Cancel = false;

private:
    std::string caption_;
};

class CheckBox : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::CheckBox; }
    bool TakesFocus() const override { return true; }
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) { Set(caption_, v); }
    // 0 unchecked, 1 checked, 2 grey. A change raises Click.
    int16_t Value() const { return value_; }
    void Value(int16_t v);
    // The user's click toggles between 0 and 1.
    void PerformClick() override { Value(value_ == 1 ? 0 : 1); }

private:
    std::string caption_;
    int16_t value_ = 0;
};

// Options of one form with the same Group exclude one another.
class OptionButton : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::OptionButton; }
    bool TakesFocus() const override { return true; }
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) { Set(caption_, v); }
    bool Value() const { return value_; }
    // True clears the others of the group and raises Click (also when it was
    // set already, as a click does); False only clears.
    void Value(bool v);
    void PerformClick() override { Value(true); }
    std::string Group;

private:
    std::string caption_;
    bool value_ = false;
};

// A plain text field; typing raises for each key KeyDown, KeyPress (which
// may drop the key by setting it to 0), Change, KeyUp.
class TextBox : public Control {
public:
    using Control::Control;
    ControlKind Kind() const override { return ControlKind::TextBox; }
    bool TakesFocus() const override { return !locked_; }
    const std::string& Text() const { return text_; }
    void Text(const std::string& v);
    bool Locked() const { return locked_; }
    void Locked(bool v) { Set(locked_, v); }
    int32_t MaxLength = 0;  // 0: no limit
    void TypeText(const std::string& keys);
    Event<> Change;
    Event<int16_t&> KeyPress;
    Event<bool&> Validate;

protected:
    bool MayLeave(bool validates) override;

private:
    std::string text_;
    bool locked_ = false;
};

struct ComboItem {
    std::string text;
    int32_t itemData = 0;
    std::string tag;
};

// Combo and list boxes: items with text, item data and tag, one selected.
class ComboBox : public Control {
public:
    using Control::Control;
    ControlKind Kind() const override { return ControlKind::ComboBox; }
    bool TakesFocus() const override { return true; }
    void AddItem(const std::string& text, int32_t itemData = 0, const std::string& tag = {});
    void Clear();
    int32_t ListCount() const { return static_cast<int32_t>(items_.size()); }
    const ComboItem& Item(int32_t index) const;  // error 381 outside
    const std::vector<ComboItem>& Items() const { return items_; }
    int32_t ItemData(int32_t index) const { return Item(index).itemData; }
    const std::string& List(int32_t index) const { return Item(index).text; }
    // -1 none; another value outside the list is error 380. A change raises Click.
    int32_t ListIndex() const { return listIndex_; }
    void ListIndex(int32_t index);
    // The selected item's text, "" for none.
    std::string Text() const;
    Event<> Click;

private:
    std::vector<ComboItem> items_;
    int32_t listIndex_ = -1;
};

// List views and grids: rows of cell texts, one selected row (-1 none).
class ListView : public Control {
public:
    using Control::Control;
    ControlKind Kind() const override { return ControlKind::ListView; }
    bool TakesFocus() const override { return true; }
    std::vector<std::string> Columns;  // headers
    void AddRow(std::vector<std::string> cells, const std::string& tag = {});
    void Clear();
    int32_t RowCount() const { return static_cast<int32_t>(rows_.size()); }
    const std::vector<std::string>& Row(int32_t row) const;  // error 381 outside
    const std::string& RowTag(int32_t row) const;
    // Error 380 outside the rows (-1 clears). A change raises ItemClick; a
    // row that is not selectable leaves the selection as it is.
    int32_t SelectedRow() const { return selected_; }
    void SelectedRow(int32_t row);
    // Grids with disabled rows say no here.
    virtual bool RowSelectable(int32_t /*row*/) const { return true; }
    // Texts of a cell, changed by code or by editing in a grid.
    void Cell(int32_t row, int32_t col, const std::string& text);
    const std::string& Cell(int32_t row, int32_t col) const;
    Event<int32_t> ItemClick;
    Event<int32_t> DblClick;

private:
    std::vector<std::vector<std::string>> rows_;
    std::vector<std::string> tags_;
    int32_t selected_ = -1;
};

// A picture; image maps report which of their layers the pointer is over.
class Image : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::Image; }
    const std::string& Picture() const { return picture_; }
    void Picture(const std::string& path) { Set(picture_, path); }
    // The pointer over a layer of the map (0: none), and a click there.
    void MoveOverLayer(int32_t layer) { LayerMove(layer); }
    void ClickLayer(int32_t layer) { LayerClick(layer); }
    Event<int32_t> LayerMove;
    Event<int32_t> LayerClick;

private:
    std::string picture_;
};

class ProgressBar : public Control {
public:
    using Control::Control;
    ControlKind Kind() const override { return ControlKind::ProgressBar; }
    float Min() const { return min_; }
    void Min(float v) { Set(min_, v); }
    float Max() const { return max_; }
    void Max(float v) { Set(max_, v); }
    float Value() const { return value_; }
    // Outside Min..Max is error 380, as the bar control refuses it.
    void Value(float v);

private:
    float min_ = 0.0f;
    float max_ = 100.0f;
    float value_ = 0.0f;
};

}  // namespace qvrl
