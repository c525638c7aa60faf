#pragma once
// Every test runs against its own per-user folder and a fresh process state,
// so no test writes to the real home or sees another test's language objects.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/ModuleState.h"

namespace qvrl::test {

inline std::filesystem::path FreshFolder(const std::string& name) {
    const char* base = std::getenv("QVRL_TEST_TMP");
    std::filesystem::path root = base && *base ? base : std::filesystem::temp_directory_path() / "qvrl-tests";
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string test = info ? std::string(info->test_suite_name()) + "." + info->name() : "global";
    for (char& c : test)
        if (c == '/') c = '_';
    const auto dir = root / (test + "-" + name);
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

inline std::string ReadFile(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteFile(const std::filesystem::path& p, const std::string& text) {
    std::filesystem::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary);
    out << text;
}

// Points APPDATA at a fresh folder and resets the process state.
class IsolatedTest : public ::testing::Test {
protected:
    void SetUp() override {
        appdata_ = FreshFolder("appdata");
        setenv("APPDATA", appdata_.c_str(), 1);
        unsetenv("QVRL_PROGRAM_FOLDER");
        ResetModuleState();
    }
    void TearDown() override {
        unsetenv("QVRL_PROGRAM_FOLDER");
        ResetModuleState();
    }
    std::filesystem::path userFolder() const { return appdata_ / "tarvek"; }
    std::filesystem::path appdata_;
};

}  // namespace qvrl::test
