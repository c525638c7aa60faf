#include "store/StoreFiles.h"

#include <filesystem>
#include <system_error>

#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

namespace fs = std::filesystem;

namespace qvrl {

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

std::string WritableStoreFile(const std::string& name) {
    const auto& overrides = State().StoreFileOverrides;
    if (auto it = overrides.find(name); it != overrides.end()) return it->second;
    const std::string user = UserStoreFile(name);
    std::error_code ec;
    if (fs::is_regular_file(user, ec)) return user;
    const std::string shipped = ShippedStoreFile(name);
    if (!fs::is_regular_file(shipped, ec))
        Raise(dao::errCouldNotFindFile, {}, "Could not find file '" + shipped + "'.");
    // The copy appears whole under its name or not at all.
    const std::string part = user + ".part";
    fs::copy_file(shipped, part, fs::copy_options::overwrite_existing, ec);
    if (!ec) fs::permissions(part, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add, ec);
    if (!ec) fs::rename(part, user, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(part, ignored);
        Raise(dao::errCannotOpen, {}, "The file '" + user + "' cannot be opened.");
    }
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
