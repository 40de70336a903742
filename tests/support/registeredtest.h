// What every file of tests includes: Qt's tests, their rows, and their registration.
#pragma once

#include "support/rows.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTest>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

#include <chrono>
#include <map>

namespace velometer {

// What nearly every test speaks in.
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Makes the application and the test object, and runs its functions as @p argv says. Returns how
/// many failed.
using TestRun = int (*)(int argc, char *argv[]);

/// The classes of tests that are compiled into the program, by the names of their files:
/// "utils_test". testmain.cpp runs them.
inline std::map<QString, TestRun> &registeredTests()
{
    static std::map<QString, TestRun> tests; // made on first use: they are told before main()
    return tests;
}

inline bool registerTest(const char *file, TestRun run)
{
    return registeredTests()
        .try_emplace(QFileInfo(QString::fromUtf8(file)).completeBaseName(), run)
        .second;
}

template <typename Test, typename Application>
int runTest(int argc, char *argv[])
{
    const Application application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace velometer

/// Instead of a main function: @p Class runs with an event loop, in a program of its folder's
/// tests.
#define VELOMETER_TEST(Class)                                                                      \
    [[maybe_unused]] static const bool registered = velometer::registerTest(                       \
        __FILE__, &velometer::runTest<velometer::Class, QCoreApplication>);

/// The same with the widgets' application.
#define VELOMETER_WIDGET_TEST(Class)                                                               \
    [[maybe_unused]] static const bool registered =                                                \
        velometer::registerTest(__FILE__, &velometer::runTest<velometer::Class, QApplication>);
