#include "interchange/modAsciiRL2.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <system_error>

#include "interchange/FileWrite.h"
#include "interchange/TextFile.h"
#include "interchange/modAsciiRL.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

constexpr double kDefaultsScale = 10000.0;
constexpr const char* kDefaultsName = "rldef.asc";

std::string WithSlash(std::string folder) {
    if (!folder.empty() && folder.back() != '/') folder += '/';
    return folder;
}

// Names of the files in a folder, in lower case.
std::set<std::string> NamesIn(const std::string& folder) {
    std::set<std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec))
        names.insert(LCase(it->path().filename().string()));
    return names;
}

// The file of that name in the folder: the exact spelling first, else the
// first (in byte order) that differs only in the case of its letters. The
// settings came from a system that does not tell cases apart. "" when none.
std::string FindCaseBlind(const std::string& folder, const std::string& name) {
    if (Trim(folder).empty()) return {};
    const std::string exact = WithSlash(folder) + name;
    if (FileExists(exact)) return exact;
    const std::string wanted = LCase(name);
    std::string found;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string leaf = it->path().filename().string();
        if (LCase(leaf) != wanted || !FileExists(it->path().string())) continue;
        if (found.empty() || leaf < fs::path(found).filename().string()) found = it->path().string();
    }
    return found;
}

// Rename on collision, as the Windows shell does it: "name.ext" arriving
// where a file of that name (in any case) already stands becomes
// "name (2).ext", else "name (3).ext" and so on; a name without an extension
// gets the number at its end. Earlier arrivals are never overwritten.
std::string ArrivalName(const std::string& folder, const std::string& name) {
    const std::set<std::string> taken = NamesIn(folder);
    if (!taken.contains(LCase(name))) return name;
    size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) dot = name.size();
    const std::string stem = name.substr(0, dot), ext = name.substr(dot);
    for (int n = 2;; ++n) {
        const std::string candidate = stem + " (" + std::to_string(n) + ")" + ext;
        if (!taken.contains(LCase(candidate))) return candidate;
    }
}

void MoveToFolder(const std::string& source, const std::string& target) {
    const fs::path src(source);
    const fs::path srcFolder = src.parent_path();
    std::error_code ec;
    if (fs::equivalent(srcFolder, fs::path(target), ec)) return;
    // A file this process cannot delete would arrive anew at every start.
    if (::access(srcFolder.c_str(), W_OK | X_OK) != 0) return;
    struct stat st {};
    if (::stat(source.c_str(), &st) != 0) return;
    try {
        const std::string bytes = ReadFileBytes(source);
        ReplaceFile(WithSlash(target) + ArrivalName(target, src.filename().string()), bytes, st.st_mode & 07777);
    } catch (const RuntimeError&) {
        // The copy did not arrive, so the original stays for the next start:
        // deleting it now would lose the user's file.
        return;
    }
    fs::remove(src, ec);
    if (ec) Raise(err::FileAccess, source, ErrorDescription(err::FileAccess) + " ('" + source + "')");
}

}  // namespace

std::string DefaultsFileName() {
    const std::string folder = UserDataFolder();
    const std::string found = FindCaseBlind(folder, kDefaultsName);
    return found.empty() ? folder + kDefaultsName : found;
}

void SaveDefaults(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow, int16_t ctrlNorm,
                  const std::string& selectCodes) {
    WriteRoofBlocks(DefaultsFileName(), town, wind, snow, true, kDefaultsScale, ctrlNorm, selectCodes);
}

void ReadDefaults(TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, int16_t& ctrlNorm, std::string& selectCodes) {
    const std::string file = DefaultsFileName();
    if (FileExists(file)) ReadRoofBlocks(file, town, wind, snow, kDefaultsScale, ctrlNorm, selectCodes);
}

void MigrateSettingsFiles() {
    const std::string target = UserDataFolder();
    const std::string towns = FindCaseBlind(ProgramFolder(), "qvrlAGSUsr.mdb");
    if (!towns.empty()) MoveToFolder(towns, target);
    for (const char* name : {"rldef.Asc", "rl.cfg"}) {
        std::string file = FindCaseBlind(UserProfileFolder(), name);
        if (file.empty()) file = FindCaseBlind(AllUsersFolder(), name);
        if (!file.empty()) MoveToFolder(file, target);
    }
}

}  // namespace qvrl
