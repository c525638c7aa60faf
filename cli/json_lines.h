#pragma once
// The hot half of the --jsonl loops: a request of the usual plain shape read
// without the general JSON reader, and answers written straight into one
// reused text, byte for byte as the JSON library would dump them.

#include <string>
#include <string_view>
#include <vector>

#include "support/vb.h"

namespace qvrl::cli {

// Reads {"call":"…","args":[…]} (keys in either order, args optional) whose
// texts are printable ASCII without escapes and whose arguments are numbers,
// such texts, true, false or null. Anything else, right or wrong, gives false
// and is left to the general reader, which alone refuses: this one never
// judges a line, so no answer can differ between the two.
bool ReadPlainRequest(std::string_view line, std::string& call, std::vector<Variant>& args);

// Appends the value or text as dump() shows it (invalid UTF-8 replaced).
void AppendJson(std::string& out, const Variant& v);
void AppendJsonText(std::string& out, std::string_view text);
void AppendJsonNumber(std::string& out, double d);

}  // namespace qvrl::cli
