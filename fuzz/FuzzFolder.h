#pragma once
// A folder of the fuzz run's own, removed when the run ends (libFuzzer leaves
// through exit(), so static destructors run).
#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace qvrl::fuzz {

class Folder {
public:
    explicit Folder(const char* stem) {
        std::string tmpl = (std::filesystem::temp_directory_path() / (std::string(stem) + "-XXXXXX")).string();
        if (::mkdtemp(tmpl.data()) == nullptr) std::abort();
        path_ = tmpl;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace qvrl::fuzz
