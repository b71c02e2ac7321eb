#include <QApplication>
#include <QtTest>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "live_fixture.h"

QObject* makeDesignerTest();
QObject* makeDrawingTest();
QObject* makeEditingTest();
QObject* makeExportTest();
QObject* makeFileTest();
QObject* makeGuideTest();
QObject* makePanelTest();
QObject* makeRandomTest();
QObject* makeRestTest();
QObject* makeVariantTest();
QObject* makeViewTest();

/// Runs the test whose name comes first, with the arguments of Qt Test after it.
int main(int argc, char* argv[]) {
    const std::map<std::string, QObject* (*)()> tests = {
        {"designer", makeDesignerTest}, {"drawing", makeDrawingTest}, {"editing", makeEditingTest},
        {"export", makeExportTest},     {"file", makeFileTest},       {"guide", makeGuideTest},
        {"panel", makePanelTest},       {"random", makeRandomTest},   {"rest", makeRestTest},
        {"variant", makeVariantTest},   {"view", makeViewTest}};
    const auto found = tests.find(argc > 1 ? argv[1] : "");
    if (found == tests.end()) {
        for (const auto& [name, make] : tests) std::printf("%s %s\n", argv[0], name.c_str());
        return 2;
    }
    QApplication application(argc, argv);
    isolateSettings();
    const std::unique_ptr<QObject> test(found->second());
    return QTest::qExec(test.get(), argc - 1, argv + 1);
}
