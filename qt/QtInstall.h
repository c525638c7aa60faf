#pragma once
// Entry of the dialog library: the core loads it by name and calls
// qvrl_qt_install (support/DesktopPlatform.h); a program linked against the
// library may call EnsureApplication and InstallQtPlatform directly.

#include <cstddef>
#include <string>

namespace qvrl::qt {

// The running QApplication, or a new one when the host has none. Returns
// false with the reason when none can be made (no display, or the host runs
// a QCoreApplication without widgets).
bool EnsureApplication(std::string& why);

// EnsureApplication, then QtPlatform as the current platform.
bool InstallQtPlatform(std::string& why);

}  // namespace qvrl::qt

extern "C" __attribute__((visibility("default"))) int qvrl_qt_install(char* message, size_t size);
