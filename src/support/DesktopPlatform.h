#pragma once
// The Qt dialogs live in a library of their own, loaded on demand: the core,
// and every host that never shows a dialog, stay free of Qt.

#include <string>

namespace qvrl {

// File name of the dialog library, looked for beside the core library.
inline constexpr const char* DesktopPlatformLibrary = "libqvroofload_qt.so.1";
// Symbol it exports: int qvrl_qt_install(char* message, size_t size), 0 on
// success, else a message in the buffer.
inline constexpr const char* DesktopPlatformEntry = "qvrl_qt_install";

// Loads the dialog library and makes its platform the current one. Raises
// error 429 (cannot create object) with the reason when the library is
// missing or no display can be opened; the platform is then unchanged.
void UseDesktopPlatform();

// For hosts that reach the component through the C API or Python: where a
// display is at hand (DISPLAY or WAYLAND_DISPLAY) and nobody chose a platform
// yet, the first message box or form loads the Qt dialogs, so a dialog
// member shows a real dialog. Without a display, and for a host that chose
// its platform, nothing changes: a batch host never waits on a hidden window.
void OfferDesktopPlatform();

}  // namespace qvrl
