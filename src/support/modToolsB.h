#pragma once
#include <string>

namespace qvrl {
// True when a file (not a folder) of that path exists. "", "\" and "/" are
// never files; any error counts as false.
bool FileExists(const std::string& path);
}  // namespace qvrl
