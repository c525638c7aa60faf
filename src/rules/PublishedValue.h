#pragma once
// A value as a published standard gives it, with the clause or table it
// comes from. An empty value means the standard gives none for the input;
// the note says why.

#include <optional>
#include <string>

namespace qvrl {

struct PublishedValue {
    std::optional<double> value;
    std::string source;  // standard and clause or table
    std::string note;    // e.g. why there is no value
};

}  // namespace qvrl
