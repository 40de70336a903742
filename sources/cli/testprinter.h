#pragma once

#include "cli/commandline.h"
#include "cli/exitstatus.h"
#include "figures/finishedtest.h"

namespace velometer {

class Output;

/// Prints tests to standard output as they happen and end, in the user's format.
class TestPrinter
{
public:
    /// @p output is borrowed. @p language of the page address: "de" or "en".
    TestPrinter(CommandLine::Format format, Output &output, QString language);

    void phase(const QString &name, int test, int count);
    void progress(int value, int max);
    /// A test of a series that will not be made: an event of its own in a stream, else nothing.
    void missed(const QString &message);
    /// Called once for each test. @p message says what went wrong, empty when nothing did. A text
    /// or a table shows what was measured; JSON has an object in any case; a stream ends with a
    /// result when the test is stored, else with an error.
    void ended(const FinishedTest &test, ExitStatus status, const QString &message);

    /// The address of the page with all tests of this user.
    QString pageAddress(const FinishedTest &test) const;

private:
    CommandLine::Format format;
    Output &output;
    QString language;
    bool headerPrinted = false;
};

} // namespace velometer
