#pragma once
#include <QApplication>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
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

// A block file as the sessions read and write it: bytes, no translation.
inline void WriteBlockFile(const QString& path, const char* text) {
    std::ofstream(path.toStdString(), std::ios::binary) << text;
}
inline std::string ReadBlockFile(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace qvrl::qt::test
