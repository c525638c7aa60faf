#include "store/modDAO.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "store/StoreText.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/Kalvo_Reg.h"

namespace fs = std::filesystem;

namespace qvrl {

// ---------------------------------------------------------------------------
// modDAO

std::string GetTempDir() {
    std::error_code ec;
    std::string dir = fs::temp_directory_path(ec).string();
    if (ec || dir.empty()) dir = "/tmp";
    if (dir.back() != '/') dir += '/';
    return dir;
}

void TerminateFromList(std::string& s) {
    const size_t n = s.size();
    if (n >= 2 && s[n - 1] == '\0' && s[n - 2] == '\0') return;
    s += (n >= 1 && s[n - 1] == '\0') ? std::string(1, '\0') : std::string(2, '\0');
}

namespace {

constexpr int32_t kCopyMultiDest = 1;
constexpr int32_t kCopyRename = 8;
constexpr int32_t kCopyFilesOnly = 128;

std::vector<std::string> SplitNulList(const std::string& s) {
    std::vector<std::string> r;
    size_t start = 0;
    while (start < s.size()) {
        const size_t end = s.find('\0', start);
        const std::string item = s.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (item.empty()) break;
        r.push_back(item);
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return r;
}

// The next free name beside an existing file: "name (2).ext", "name (3).ext", ...
fs::path FreeName(const fs::path& target) {
    std::error_code ec;
    for (int i = 2;; ++i) {
        fs::path candidate =
            target.parent_path() / (target.stem().string() + " (" + std::to_string(i) + ")" + target.extension().string());
        if (!fs::exists(candidate, ec)) return candidate;
    }
}

// Copies one file; the target appears complete or not at all.
bool CopyOne(const fs::path& from, fs::path to, int32_t flags) {
    std::error_code ec;
    if (fs::is_directory(to, ec)) to /= from.filename();
    if (fs::exists(to, ec) && (flags & kCopyRename)) to = FreeName(to);
    fs::path part = to;
    part += ".part";
    if (!fs::copy_file(from, part, fs::copy_options::overwrite_existing, ec)) {
        fs::remove(part, ec);
        return false;
    }
    fs::rename(part, to, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(part, ignored);
        return false;
    }
    return true;
}

}  // namespace

int32_t CopyFileShell(const std::string& From, const std::string& To, bool RenameIfExists) {
    int32_t flags = 0;
    if (From.find(std::string(2, '\0')) != std::string::npos) flags += kCopyMultiDest;
    if (From.find('*') != std::string::npos) flags += kCopyFilesOnly;
    if (RenameIfExists) flags += kCopyRename;
    std::string from = From;
    TerminateFromList(from);
    const std::vector<std::string> sources = SplitNulList(from);
    std::string to = To;
    TerminateFromList(to);
    const std::vector<std::string> targets = SplitNulList(to);
    if (sources.empty() || targets.empty()) return 2;
    int32_t result = 0;
    for (size_t i = 0; i < sources.size(); ++i) {
        const fs::path target = (flags & kCopyMultiDest) && i < targets.size() ? targets[i] : targets.front();
        std::string dir, file, ext;
        SplitPath(sources[i], dir, file, ext);
        if (file.find_first_of("*?") == std::string::npos) {
            if (!FileExists(sources[i]) || !CopyOne(sources[i], target, flags)) result = 2;
            continue;
        }
        std::error_code ec;
        bool any = false;
        for (const auto& entry : fs::directory_iterator(dir.empty() ? "." : dir, ec)) {
            if (!entry.is_regular_file(ec)) continue;  // only files match a wild card
            if (!LikeMatch(entry.path().filename().string(), file)) continue;
            any = true;
            if (!CopyOne(entry.path(), target, flags)) result = 2;
        }
        if (!any) result = 2;
    }
    return result;
}

std::shared_ptr<Database> OpenDB(const std::string& Name, const Variant& Options, const Variant& ReadOnly,
                                 const Variant& Connect) {
    try {
        if (!State().CopyToTemp) {
            if (!FileExists(Name)) Raise(err::FileNotFound);
            return DBEngine::OpenDatabase(Name, Options, ReadOnly, Connect);
        }
        std::string dir, file, ext;
        SplitPath(Name, dir, file, ext);
        if (!dir.empty() && dir.back() != '/' && dir.back() != '\\') dir += '/';
        const std::string temp = GetTempDir();
        // A copy that finds an older one of the same name gets a new name, and
        // the older file is the one opened.
        CopyFileShell(dir + file, temp + file, true);
        return DBEngine::OpenDatabase(temp + file, Options, ReadOnly, Connect);
    } catch (const RuntimeError& e) {
        if (e.number() == err::FileNotFound || State().CopyToTemp) {
            ModuleState& st = State();
            st.StoreOpenErrorNumber = e.number();
            st.StoreOpenErrorFile = Name;
            st.StoreOpenErrorText = e.description().find(Name) == std::string::npos
                                        ? Name + ": " + e.description()
                                        : e.description();
            CurrentPlatform().MsgBox(Name + " cannot be opened \nErr." + std::to_string(e.number()) + "\n" +
                                         e.description(),
                                     mb::Critical, ProgramName());
            throw;
        }
        State().CopyToTemp = true;
        return OpenDB(Name, Options, ReadOnly, Connect);
    }
}

StoreOpenError LastStoreOpenError() {
    const ModuleState& st = State();
    return {st.StoreOpenErrorNumber, st.StoreOpenErrorFile, st.StoreOpenErrorText};
}

void ClearStoreOpenError() {
    ModuleState& st = State();
    st.StoreOpenErrorNumber = 0;
    st.StoreOpenErrorFile.clear();
    st.StoreOpenErrorText.clear();
}

void RaiseStoreOpenError() {
    const ModuleState& st = State();
    if (st.StoreOpenErrorNumber != 0) Raise(st.StoreOpenErrorNumber, {}, st.StoreOpenErrorText);
}

std::string NzText(const Variant& v) {
    if (v.isEmpty() || v.isNull()) return {};
    return CStr(v);
}

double NzNumber(const Variant& v) {
    if (v.isEmpty() || v.isNull()) return 0.0;
    if (v.type() == Variant::Type::String) return IsNumeric(v.asString()) ? CDbl(v) : 0.0;
    if (v.type() == Variant::Type::Date) return v.asDate().serial;
    return v.toDouble();
}

}  // namespace qvrl
