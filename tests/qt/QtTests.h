#pragma once
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

namespace qvrl::qt::test {

using Factory = std::function<std::unique_ptr<QObject>()>;
inline std::vector<Factory>& Registry() {
    static std::vector<Factory> r;
    return r;
}
template <class T>
struct Add {
    Add() {
        Registry().push_back([] { return std::make_unique<T>(); });
    }
};

// Runs f once the next modal window is up (a dialog's own loop blocks the
// test); gives up after about ten seconds so that a fault cannot hang.
inline void WhenModal(std::function<void(QWidget*)> f, int tries = 2000) {
    QTimer::singleShot(tries == 2000 ? 0 : 5, [f, tries] {
        if (QWidget* w = QApplication::activeModalWidget(); w && w->isVisible()) {
            f(w);
            return;
        }
        if (tries > 0) WhenModal(f, tries - 1);
    });
}

}  // namespace qvrl::qt::test
