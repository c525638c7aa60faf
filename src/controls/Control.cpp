#include "controls/Control.h"

#include "controls/Form.h"
#include "support/errors.h"

namespace qvrl {

int16_t key::CodeOf(const std::string& ch) {
    if (ch.empty()) return 0;
    const unsigned char c = static_cast<unsigned char>(ch[0]);
    return static_cast<int16_t>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

bool Control::SendKey(int16_t keyCode) {
    int16_t k = keyCode;
    KeyDown(k, 0);
    const bool took = k != 0 && HandleKey(k);
    KeyUp(keyCode, 0);
    return took;
}

std::string Control::Key() const { return index_ < 0 ? name_ : name_ + "(" + std::to_string(index_) + ")"; }

void CheckBox::Value(int16_t v) {
    if (v < 0 || v > 2) Raise(err::InvalidPropertyValue, Key());
    if (v == value_) return;
    value_ = v;
    Notify();
    Click();
}

void OptionButton::Value(bool v) {
    if (v) {
        if (Form* f = Parent())
            for (Control* c : f->Controls()) {
                auto* o = dynamic_cast<OptionButton*>(c);
                if (o && o != this && o->Group == Group && o->value_) {
                    o->value_ = false;
                    o->Notify();
                }
            }
        const bool was = value_;
        value_ = true;
        if (!was) Notify();
        Click();
        return;
    }
    Set(value_, false);
}

void TextBox::Text(const std::string& v) {
    if (v == text_) return;
    text_ = v;
    Notify();
    Change();
}

void TextBox::TypeText(const std::string& keys) {
    for (size_t i = 0; i < keys.size(); ++i) {
        int16_t k = static_cast<unsigned char>(keys[i]);
        std::string ch(1, keys[i]);
        while (i + 1 < keys.size() && (static_cast<unsigned char>(keys[i + 1]) & 0xC0) == 0x80) ch += keys[++i];
        int16_t code = key::CodeOf(ch);
        KeyDown(code, 0);
        struct Up {
            TextBox& t;
            int16_t code;
            ~Up() { t.KeyUp(code, 0); }
        } up{*this, key::CodeOf(ch)};
        if (code == 0 || locked_) continue;
        KeyPress(k);
        if (k == 0) continue;
        if (k == key::Back) {
            std::string t = text_;
            while (!t.empty() && (static_cast<unsigned char>(t.back()) & 0xC0) == 0x80) t.pop_back();
            if (!t.empty()) t.pop_back();
            Text(t);
            continue;
        }
        if (MaxLength > 0 && static_cast<int32_t>(text_.size()) >= MaxLength) continue;
        Text(text_ + ch);
    }
}

bool TextBox::MayLeave(bool validates) {
    if (!validates) return true;
    bool cancel = false;
    Validate(cancel);
    return !cancel;
}

void ComboBox::AddItem(const std::string& text, int32_t itemData, const std::string& tag) {
    items_.push_back({text, itemData, tag});
    Notify();
}

void ComboBox::Clear() {
    items_.clear();
    listIndex_ = -1;
    Notify();
}

const ComboItem& ComboBox::Item(int32_t index) const {
    if (index < 0 || index >= ListCount())
        Raise(err::InvalidPropertyArrayIndex, Key(), "no item " + std::to_string(index) + " in " + Key());
    return items_[static_cast<size_t>(index)];
}

void ComboBox::ListIndex(int32_t index) {
    if (index < -1 || index >= ListCount())
        Raise(err::InvalidPropertyValue, Key(), "no item " + std::to_string(index) + " in " + Key());
    if (index == listIndex_) return;
    listIndex_ = index;
    Notify();
    Click();
}

std::string ComboBox::Text() const { return listIndex_ < 0 ? std::string() : items_[static_cast<size_t>(listIndex_)].text; }

void ListView::AddRow(std::vector<std::string> cells, const std::string& tag) {
    rows_.push_back(std::move(cells));
    tags_.push_back(tag);
    Notify();
}

void ListView::Clear() {
    rows_.clear();
    tags_.clear();
    selected_ = -1;
    Notify();
}

const std::vector<std::string>& ListView::Row(int32_t row) const {
    if (row < 0 || row >= RowCount())
        Raise(err::InvalidPropertyArrayIndex, Key(), "no row " + std::to_string(row) + " in " + Key());
    return rows_[static_cast<size_t>(row)];
}

const std::string& ListView::RowTag(int32_t row) const {
    Row(row);
    return tags_[static_cast<size_t>(row)];
}

void ListView::SelectedRow(int32_t row) {
    if (row < -1 || row >= RowCount())
        Raise(err::InvalidPropertyValue, Key(), "no row " + std::to_string(row) + " in " + Key());
    if (row == selected_ || (row >= 0 && !RowSelectable(row))) return;
    selected_ = row;
    Notify();
    if (row >= 0) ItemClick(row);
}

void ListView::Cell(int32_t row, int32_t col, const std::string& text) {
    Row(row);
    auto& cells = rows_[static_cast<size_t>(row)];
    if (col < 0) Raise(err::InvalidPropertyArrayIndex, Key());
    if (static_cast<size_t>(col) >= cells.size()) cells.resize(static_cast<size_t>(col) + 1);
    Set(cells[static_cast<size_t>(col)], text);
}

const std::string& ListView::Cell(int32_t row, int32_t col) const {
    const auto& cells = Row(row);
    if (col < 0 || static_cast<size_t>(col) >= cells.size())
        Raise(err::InvalidPropertyArrayIndex, Key(), "no column " + std::to_string(col) + " in " + Key());
    return cells[static_cast<size_t>(col)];
}

void ProgressBar::Value(float v) {
    if (v < min_ || v > max_) Raise(err::InvalidPropertyValue, Key());
    Set(value_, v);
}

}  // namespace qvrl
