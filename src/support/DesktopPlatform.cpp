#include "support/DesktopPlatform.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "support/ModuleState.h"
#include "support/Platform.h"
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

bool DisplayAtHand() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const char* v = std::getenv(name);
        if (v && *v) return true;
    }
    return false;
}

// Stands in until something must be shown; then the Qt platform takes its
// place and this object is gone, so nothing after Shown() touches it.
class DesktopOnDemand : public Platform {
public:
    int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) override {
        return Shown(false).MsgBox(text, flags, title);
    }
    void ShowModal(FormBase& form) override { Shown(true).ShowModal(form); }
    void LoadForm(FormBase& form) override { Shown(true).LoadForm(form); }
    void ShowModeless(FormBase& form) override { Shown(true).ShowModeless(form); }
    // Nothing is on screen yet: these need no window.
    void DoEvents() override { quiet_.DoEvents(); }
    void FocusNextControl(FormBase& form) override { quiet_.FocusNextControl(form); }
    int32_t TextWidth(const std::string& text) override { return quiet_.TextWidth(text); }

private:
    static Platform& Shown(bool form) {
        const std::shared_ptr<Platform> keep = State().platform;
        try {
            UseDesktopPlatform();
        } catch (const RuntimeError&) {
            SetPlatform(nullptr);
            // A message box falls back to its default answer; a form that
            // cannot be shown is the error itself.
            if (form) throw;
        }
        return CurrentPlatform();
    }
    HeadlessPlatform quiet_;
};

}  // namespace

void OfferDesktopPlatform() {
    ModuleState& st = State();
    if (st.PlatformChosen || !DisplayAtHand()) return;
    SetPlatform(std::make_shared<DesktopOnDemand>());
}

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
