#pragma once
// Text helpers of the live load catalogue.

#include <string>

namespace qvrl {

// A double blank in a catalogue text marks a line break: each pair, first to
// last, becomes CR LF while the text is longer than two characters.
void SplitLongText(std::string& text);

}  // namespace qvrl
