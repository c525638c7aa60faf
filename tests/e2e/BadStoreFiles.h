#pragma once
// Database files that cannot be opened, as a user ends up with them, and a
// temporary folder of the test's own: after the first failure in place the
// store opens copies from there, and a stale copy of another run would open.

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "TestEnv.h"

namespace qvrl::test {

struct BadFile {
    const char* what;
    std::optional<std::string> bytes;  // none: the file is missing
    int number;                        // the store's error
};

inline const BadFile kBadFiles[] = {
    {"missing", std::nullopt, 53},
    {"garbage", std::string("Standard Jet DB? no, a text file\n", 33) + std::string(3000, 'x'), 3343},
    {"0 bytes", std::string(), 3343},
};

// Puts the bad file at path (removing what lay there).
inline void PlaceBadFile(const BadFile& b, const std::filesystem::path& path) {
    std::filesystem::remove(path);
    if (b.bytes) WriteFile(path, *b.bytes);
}

class OwnTempFolder {
public:
    explicit OwnTempFolder(const std::string& name) {
        if (const char* t = std::getenv("TMPDIR")) old_ = t;
        setenv("TMPDIR", FreshFolder("tmp-" + name).c_str(), 1);
    }
    ~OwnTempFolder() {
        if (old_) setenv("TMPDIR", old_->c_str(), 1);
        else unsetenv("TMPDIR");
    }
    OwnTempFolder(const OwnTempFolder&) = delete;
    OwnTempFolder& operator=(const OwnTempFolder&) = delete;

private:
    std::optional<std::string> old_;
};

}  // namespace qvrl::test
