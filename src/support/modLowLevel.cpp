#include "support/modLowLevel.h"

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "support/ModuleState.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {
std::string Env(const char* name) {
    const char* v = std::getenv(name);
    return v ? std::string(v) : std::string();
}

std::string StripSlash(std::string s) {
    while (s.size() > 1 && s.back() == '/') s.pop_back();
    return s;
}

// Folder of the shared library this function lives in.
std::string LibraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&LibraryFolder), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code ec;
    const fs::path p = fs::weakly_canonical(fs::path(info.dli_fname), ec);
    if (ec) return {};
    return p.parent_path().string();
}
}  // namespace

std::string ProgramFolder() {
    const std::string env = Trim(Env("QVRL_PROGRAM_FOLDER"));
    if (!env.empty()) return StripSlash(env);
    // The library does not move while the process runs: found once.
    std::string& found = State().ProgramFolderFound;
    if (!found.empty()) return found;
    found = QVRL_BUILD_DATA_DIR;
    const std::string lib = LibraryFolder();
    if (!lib.empty()) {
        std::error_code ec;
        const fs::path installed = fs::path(lib).parent_path() / QVRL_INSTALL_DATA_REL;
        if (fs::is_regular_file(installed / "language.ini", ec))
            found = StripSlash(installed.lexically_normal().string());
    }
    return found;
}

std::string ProgramName() { return "QVRoofLoad"; }

std::string GetAppData() { return Env("APPDATA"); }

std::string UserDataFolder() {
    std::string base = Trim(GetAppData());
    if (base.empty()) {
        base = Trim(Env("XDG_DATA_HOME"));
        if (base.empty()) base = UserProfileFolder() + "/.local/share";
    }
    if (base.back() != '/') base += '/';
    const std::string folder = base + "tarvek/";
    // Once made or found for this environment, the folder is not probed again.
    ModuleState& st = State();
    if (st.UserFolderMade == folder) return folder;
    std::error_code ec;
    if (!fs::is_directory(folder, ec)) fs::create_directories(folder, ec);
    if (fs::is_directory(folder, ec)) st.UserFolderMade = folder;
    return folder;
}

std::string AllUsersFolder() {
    const std::string env = Trim(Env("QVRL_ALLUSERS_FOLDER"));
    return CutAtNul(env.empty() ? std::string("/etc/xdg/tarvek") : env);
}

std::string UserProfileFolder() {
    std::string home = Env("HOME");
    if (home.empty()) {
        if (const passwd* pw = getpwuid(getuid())) home = pw->pw_dir ? pw->pw_dir : "";
    }
    return Trim(CutAtNul(home));
}

std::string CutAtNul(const std::string& s) {
    std::string r = RTrim(s);
    const size_t nul = r.find('\0');
    if (nul != std::string::npos) r.resize(nul);
    return RTrim(r);
}

}  // namespace qvrl
