#include "support/modToolsB.h"

#include <filesystem>
#include <system_error>

namespace qvrl {

bool FileExists(const std::string& path) {
    if (path.empty() || path == "\\" || path == "/") return false;
    std::error_code ec;
    return std::filesystem::is_regular_file(std::filesystem::path(path), ec);
}

}  // namespace qvrl
