#pragma once

#include "support/rows.h"

#include <QCoreApplication>
#include <QTest>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

#include <chrono>
#include <memory>
#include <vector>

namespace velometer {

// What nearly every test speaks in.
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// One class of tests, known to the program it is compiled into. testmain.cpp runs it.
class RegisteredTest
{
public:
    /// Makes the application and the test object, and runs its functions as @p argv says. Returns
    /// how many failed.
    using Run = int (*)(int argc, char *argv[]);

    RegisteredTest(const char *className, const char *file, Run function);

    /// "UtilsTest", or "utils_test" after the file that it stands in.
    bool isCalled(const QByteArray &name) const { return name == className || name == fileName; }
    const QByteArray &name() const { return fileName; }
    int run(int argc, char *argv[]) const { return function(argc, argv); }

    /// In the order of the linker, which is any.
    static const std::vector<const RegisteredTest *> &all();

private:
    QByteArray className;
    QByteArray fileName;
    Run function;
};

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
    static const velometer::RegisteredTest registered(                                             \
        #Class, __FILE__, &velometer::runTest<velometer::Class, QCoreApplication>);

/// The same with the widgets' application.
#define VELOMETER_WIDGET_TEST(Class)                                                               \
    static const velometer::RegisteredTest registered(                                             \
        #Class, __FILE__, &velometer::runTest<velometer::Class, QApplication>);
