#pragma once
// What a benchmark may change of its process: folders of its own under the
// temporary folder, removed when their owner goes, and environment variables
// that are put back when the benchmark ends, so that the next one finds the
// process as the run began.

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/ModuleState.h"
#include "support/modLowLevel.h"

namespace qvrl::bench {

// The data folder of this build as the run began, before any benchmark
// pointed QVRL_PROGRAM_FOLDER elsewhere.
inline const std::string kShippedFolder = ProgramFolder();

// A new folder "qvrl-bench-<name>-XXXXXX" in the temporary folder.
class TempFolder {
public:
    explicit TempFolder(const std::string& name) {
        std::string tmpl = (std::filesystem::temp_directory_path() / ("qvrl-bench-" + name + "-XXXXXX")).string();
        if (::mkdtemp(tmpl.data()) == nullptr) std::abort();
        path_ = tmpl;
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// Sets variables for one benchmark; restores them, and a fresh process
// state, when it goes.
class ScopedEnv {
public:
    ScopedEnv() = default;
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;
    ~ScopedEnv() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            if (it->second) setenv(it->first.c_str(), it->second->c_str(), 1);
            else unsetenv(it->first.c_str());
        }
        ResetModuleState();
    }
    void Set(const char* name, const std::string& value) {
        const char* old = std::getenv(name);
        saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
        setenv(name, value.c_str(), 1);
    }

private:
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

}  // namespace qvrl::bench
