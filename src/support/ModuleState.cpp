#include "support/ModuleState.h"

#include "support/CLocLite.h"
#include "support/Platform.h"

namespace qvrl {

ModuleState::ModuleState() : platform(std::make_shared<HeadlessPlatform>()) {}
ModuleState::~ModuleState() = default;

namespace {
std::unique_ptr<ModuleState>& Holder() {
    static std::unique_ptr<ModuleState> s = std::make_unique<ModuleState>();
    return s;
}
}  // namespace

ModuleState& State() { return *Holder(); }

void ResetModuleState() { Holder() = std::make_unique<ModuleState>(); }

Platform& CurrentPlatform() { return *State().platform; }

void SetPlatform(std::shared_ptr<Platform> p) {
    State().platform = p ? std::move(p) : std::make_shared<HeadlessPlatform>();
    State().PlatformChosen = true;
}

}  // namespace qvrl
