#include "cli/testprinter.h"

#include "cli/output.h"
#include "cli/testevents.h"
#include "cli/textformat.h"
#include "figures/csvformat.h"
#include "figures/jsonformat.h"
#include "utils/deployment.h"

#include <utility>

namespace velometer {

using Format = CommandLine::Format;

TestPrinter::TestPrinter(Format howToPrint, Output &to, QString languageOfPages)
    : format(howToPrint)
    , output(to)
    , language(std::move(languageOfPages))
{}

void TestPrinter::phase(const QString &name, int test, int count)
{
    if (format == Format::JsonStream) {
        output.post(JsonFormat::line(TestEvents::phase(name, test, count)));
    }
}

void TestPrinter::progress(int value, int max)
{
    if (format == Format::JsonStream) {
        output.offer(JsonFormat::line(TestEvents::progress(value, max)));
    }
}

void TestPrinter::missed(const QString &message)
{
    if (format == CommandLine::Format::JsonStream) {
        output.write(
            JsonFormat::line(TestEvents::error(message, static_cast<int>(ExitStatus::Broken))));
    }
}

void TestPrinter::ended(const FinishedTest &test, ExitStatus status, const QString &message)
{
    switch (format) {
    case Format::Text:
        // Without a test number there was no test to speak of; the message says why.
        if (test.testId) {
            output.write(TextFormat::test(test, pageAddress(test)).toUtf8());
        }
        break;
    case Format::Json: output.write(JsonFormat::line(JsonFormat::test(test))); break;
    case Format::JsonStream:
        output.write(JsonFormat::line(test.storedId
                                          ? TestEvents::result(test)
                                          : TestEvents::error(message, static_cast<int>(status))));
        break;
    case Format::Csv:
        if (!std::exchange(headerPrinted, true)) {
            output.write(CsvFormat::testHeader());
        }
        output.write(CsvFormat::test(test));
        break;
    case Format::GeoJson:
    case Format::Gpx: break; // documents of many tests, see export
    }
}

QString TestPrinter::pageAddress(const FinishedTest &test) const
{
    return test.userId ? Deployment::current().userPageAddress(*test.userId, language) : QString();
}

} // namespace velometer
