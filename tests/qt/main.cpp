// Every QTest class of the Qt adapter, run in one process with one
// QApplication, as a host would have it.
#include <QApplication>
#include <QTest>

#include "QtTests.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    int failed = 0;
    for (auto& make : qvrl::qt::test::Registry()) {
        std::unique_ptr<QObject> t = make();
        failed += QTest::qExec(t.get(), argc, argv);
    }
    return failed == 0 ? 0 : 1;
}
