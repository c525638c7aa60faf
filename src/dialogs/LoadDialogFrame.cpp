#include "dialogs/LoadDialogFrame.h"

namespace qvrl {

void ValueBox(QVTextBox& box, const char* format) {
    box.Style(QVTextBox::StyleReal);
    box.FormatString(format);
    box.Schema(2);
}

void RemarkBox(QVTextBox& box) {
    box.Style(QVTextBox::StyleLength);
    box.Schema(4);
    box.EditWidth(2400);
}

double BoxNumber(QVTextBox& box) { return box.ReadValue(2).toDouble(); }

int32_t IndexOfCode(const ComboBox& cb, int32_t code) {
    for (int32_t i = 0; i < cb.ListCount(); ++i)
        if (cb.ItemData(i) == code) return i;
    return -1;
}

void SelectNormOrFirst(ComboBox& cb, int16_t& norm) {
    if (cb.ListCount() == 0) return;
    const int32_t i = IndexOfCode(cb, norm);
    if (i >= 0) {
        cb.ListIndex(i);
    } else {
        cb.ListIndex(0);
        norm = static_cast<int16_t>(cb.ItemData(0));
    }
}

void OwnedValue(QVTextBox& box, bool owned) {
    box.Locked(owned);
    box.LabelLike(owned);
}

}  // namespace qvrl
