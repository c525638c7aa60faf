#include "QtInstall.h"

#include <QApplication>
#include <cstdlib>
#include <cstring>

#include "QtPlatform.h"
#include "support/ModuleState.h"

namespace qvrl::qt {

bool EnsureApplication(std::string& why) {
    if (QCoreApplication* app = QCoreApplication::instance()) {
        if (qobject_cast<QApplication*>(app)) return true;
        why = "the host runs a Qt application without widgets; dialogs need a QApplication";
        return false;
    }
    // Qt ends the process when it finds no display; say so instead.
    const auto set = [](const char* name) {
        const char* v = std::getenv(name);
        return v && *v;
    };
    if (!set("QT_QPA_PLATFORM") && !set("DISPLAY") && !set("WAYLAND_DISPLAY")) {
        why = "no display: set DISPLAY, or QT_QPA_PLATFORM=offscreen to run without a screen";
        return false;
    }
    // Lives as long as the process: the host may show dialogs until it ends.
    static int argc = 1;
    static char name[] = "qvroofload";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
    return true;
}

bool InstallQtPlatform(std::string& why) {
    if (!EnsureApplication(why)) return false;
    SetPlatform(std::make_shared<QtPlatform>());
    return true;
}

}  // namespace qvrl::qt

int qvrl_qt_install(char* message, size_t size) {
    std::string why;
    if (qvrl::qt::InstallQtPlatform(why)) return 0;
    if (message && size > 0) {
        const size_t n = why.size() < size - 1 ? why.size() : size - 1;
        std::memcpy(message, why.data(), n);
        message[n] = '\0';
    }
    return 1;
}
