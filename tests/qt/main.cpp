// Every QTest class of the Qt adapter, run in one process with one
// QApplication, as a host would have it.
#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstring>

#include "QtTests.h"
#include "qvroofload.h"

int main(int argc, char** argv) {
    // The C API in a host without a display and without Qt of its own: a
    // clear error, no abort.
    if (argc == 2 && std::strcmp(argv[1], "--capi-without-display") == 0) {
        const qvrl_status s = qvrl_use_qt_dialogs();
        std::printf("%u %d %s\n", s, qvrl_last_error_number(), qvrl_last_error_description());
        return s == 0 ? 1 : 0;
    }
    QApplication app(argc, argv);
    int failed = 0;
    for (auto& make : qvrl::qt::test::Registry()) {
        std::unique_ptr<QObject> t = make();
        failed += QTest::qExec(t.get(), argc, argv);
    }
    return failed == 0 ? 0 : 1;
}
