#include "support/Platform.h"

namespace qvrl {

int32_t mb::DefaultAnswer(int32_t flags) {
    switch (flags & 7) {
    case AbortRetryIgnore: return Abort;
    case YesNoCancel:
    case YesNo: return Yes;
    case RetryCancel: return Retry;
    default: return OK;
    }
}

int32_t HeadlessPlatform::MsgBox(const std::string& text, int32_t flags, const std::string& title) {
    messages_.push_back({text, flags, title});
    if (answers_.empty()) return mb::DefaultAnswer(flags);
    const int32_t a = answers_.front();
    answers_.erase(answers_.begin());
    return a;
}

void HeadlessPlatform::ShowModal(FormBase& form) {
    const std::string name = form.FormName();
    shown_.push_back(name);
    const auto it = handlers_.find(name);
    if (it != handlers_.end()) it->second(form);
}

int32_t HeadlessPlatform::TextWidth(const std::string& text) {
    // A fixed pitch stands in for a font: 7 pixels a character.
    int32_t chars = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80) ++chars;
    return chars * 7;
}

void HeadlessPlatform::SetFocus(FormBase& form, const std::string& controlKey, bool selectAll) {
    focusMoves_.push_back(form.FormName() + "." + controlKey + (selectAll ? " selected" : ""));
}

void HeadlessPlatform::Clear() {
    messages_.clear();
    answers_.clear();
    handlers_.clear();
    shown_.clear();
    focusMoves_.clear();
    doEvents_ = 0;
}

}  // namespace qvrl
