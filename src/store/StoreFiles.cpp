#include "store/StoreFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

[[noreturn]] void RaiseCannotMake(const std::string& file, const std::string& why) {
    Raise(dao::errCannotOpen, {}, "The file '" + file + "' cannot be made: " + why + ".");
}

// Forces the copy's bytes to disk before it takes its name.
bool Flush(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool ok = ::fsync(fd) == 0;
    return ::close(fd) == 0 && ok;
}

}  // namespace

std::string ShippedStoreFile(const std::string& name) { return ProgramFolder() + "/" + name; }

std::string UserStoreFile(const std::string& name) { return UserDataFolder() + name; }

std::string StoreFile(const std::string& name) {
    const auto& overrides = State().StoreFileOverrides;
    if (auto it = overrides.find(name); it != overrides.end()) return it->second;
    std::string user = UserStoreFile(name);
    std::error_code ec;
    if (fs::is_regular_file(user, ec)) return user;
    return ShippedStoreFile(name);
}

std::string ShippedDataFile(const std::string& name) {
    const auto& overrides = State().StoreFileOverrides;
    if (auto it = overrides.find(name); it != overrides.end()) return it->second;
    return ShippedStoreFile(name);
}

std::string WritableStoreFile(const std::string& name) {
    const auto& overrides = State().StoreFileOverrides;
    if (auto it = overrides.find(name); it != overrides.end()) return it->second;
    const std::string user = UserStoreFile(name);
    std::error_code ec;
    if (fs::is_regular_file(user, ec)) return user;
    const std::string shipped = ShippedStoreFile(name);
    if (!fs::is_regular_file(shipped, ec))
        Raise(dao::errCouldNotFindFile, {}, "Could not find file '" + shipped + "'.");
    // The copy appears whole under its name or not at all. A part left by a
    // copy that was killed is stale: it goes first, whatever its mode.
    const std::string part = user + ".part";
    fs::remove(part, ec);
    ec.clear();
    if (!fs::copy_file(shipped, part, ec) || ec) {
        const std::string why = ec.message();
        std::error_code ignored;
        fs::remove(part, ignored);
        RaiseCannotMake(user, why);
    }
    // An installed file may be read-only for everyone; the user's copy is the
    // user's to write.
    fs::permissions(part, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add, ec);
    if (!ec && State().FileWriteSync && !Flush(part)) ec = std::error_code(errno, std::generic_category());
    // A copy made meanwhile by another process wins; it may hold imports already.
    if (!ec && ::link(part.c_str(), user.c_str()) != 0 && errno != EEXIST)
        ec = std::error_code(errno, std::generic_category());
    if (ec) {
        const std::string why = ec.message();
        std::error_code ignored;
        fs::remove(part, ignored);
        RaiseCannotMake(user, why);
    }
    fs::remove(part, ec);
    return user;
}

void SetStoreFileOverride(const std::string& name, const std::string& path) {
    ModuleState& st = State();
    if (path.empty())
        st.StoreFileOverrides.erase(name);
    else
        st.StoreFileOverrides[name] = path;
    st.CpeDb.reset();
    st.FigureDb.reset();
    st.SlzDb.reset();
    st.WlzDb.reset();
    st.AGSDb.reset();
    st.AGSUsrDb.reset();
    st.AGSDbEN.reset();
    st.AGSUsrDbEN.reset();
    st.LiveLoadDb.reset();
}

}  // namespace qvrl
