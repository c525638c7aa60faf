#include "support/DesktopPlatform.h"

#include <dlfcn.h>

#include <cstddef>

#include "support/errors.h"

namespace qvrl {

namespace {

using err::CannotCreateObject;

std::string OwnFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&UseDesktopPlatform), &info) == 0 || !info.dli_fname) return {};
    const std::string path = info.dli_fname;
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace

void UseDesktopPlatform() {
    // Beside the core first, so that a build tree or prefix uses its own
    // copy; then the loader's search path.
    void* lib = dlopen((OwnFolder() + DesktopPlatformLibrary).c_str(), RTLD_NOW | RTLD_GLOBAL);
    std::string why;
    if (!lib) {
        why = dlerror();
        lib = dlopen(DesktopPlatformLibrary, RTLD_NOW | RTLD_GLOBAL);
    }
    if (!lib) Raise(CannotCreateObject, "UseDesktopPlatform", "the Qt dialogs cannot be loaded: " + why);
    using Install = int (*)(char*, size_t);
    auto install = reinterpret_cast<Install>(dlsym(lib, DesktopPlatformEntry));
    if (!install)
        Raise(CannotCreateObject, "UseDesktopPlatform",
              std::string(DesktopPlatformLibrary) + " has no entry " + DesktopPlatformEntry);
    char message[512] = {};
    if (install(message, sizeof message) != 0) Raise(CannotCreateObject, "UseDesktopPlatform", message);
}

}  // namespace qvrl
