#pragma once
// Pieces of the frame the load dialogs share: value boxes, the standard
// combo, and the boxes a rule or the catalogue owns while NachNorm is on.

#include <cstdint>

#include "controls/Control.h"
#include "controls/QVTextBox.h"

namespace qvrl {

// Loads and heights show to the hundredth, which is what the block file
// keeps; factors need the third place.
void ValueBox(QVTextBox& box, const char* format);
// A box of free text, without the length limit of a value box.
void RemarkBox(QVTextBox& box);
double BoxNumber(QVTextBox& box);

// The item of that code, -1 for none.
int32_t IndexOfCode(const ComboBox& cb, int32_t code);
// Selects norm; a code not in the list selects the first item and norm
// takes its code. An empty list changes nothing.
void SelectNormOrFirst(ComboBox& cb, int16_t& norm);

// A value the dialog owns is shown, not typed, and the tab passes it by.
void OwnedValue(QVTextBox& box, bool owned);

}  // namespace qvrl
