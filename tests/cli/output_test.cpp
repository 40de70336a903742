#include "cli/output.h"

#include "app/startup.h"
#include "support/registeredtest.h"

#include <fcntl.h>
#include <unistd.h>

namespace velometer {

/// What velometer-cli writes to, with the reader in the test's hand.
class Pipe
{
public:
    Pipe()
    {
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            qFatal("no pipe");
        }
    }
    int writeEnd() const { return ends[1]; }
    void closeReadEnd() { ::close(ends[0]); }
    QByteArray read(qsizetype length)
    {
        QByteArray data(length, '\0');
        data.resize(::read(ends[0], data.data(), static_cast<size_t>(length)));
        return data;
    }

private:
    int ends[2];
};

class OutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StartUp::prepareProcess(); }

    void goesOnWithoutAReader()
    {
        Pipe pipe;
        Output output(pipe.writeEnd());
        pipe.closeReadEnd();
        output.write("a\n");
        output.post("b\n");
        QCOMPARE(output.error(), QString());
    }

    void letsNoTextSteerTheTerminal()
    {
        Pipe pipe;
        Output(pipe.writeEnd()).line(u"a\x1b[2J\tb\r\u009b\x7f\nc"_s);
        QCOMPARE(pipe.read(100), "a[2J\tb\nc\n");
    }

    void tellsOfAFullDisk()
    {
        Output output(::open("/dev/full", O_WRONLY | O_CLOEXEC));
        output.write("a\n");
        QVERIFY(!output.error().isEmpty());
    }

    // A stalled reader must not stop a measurement: here nobody reads while the pipe overflows.
    void keepsWhatAStalledReaderCannotTakeYet()
    {
        Pipe pipe;
        Output output(pipe.writeEnd());
        QByteArray posted;
        for (int i = 0; i < 40'000; ++i) {
            const QByteArray line = QByteArray::number(i) + '\n';
            output.post(line);
            posted += line;
        }
        output.offer("dropped\n");
        QByteArray taken;
        while (taken.size() < posted.size()) {
            taken += pipe.read(4096);
            output.post(QByteArray());
        }
        QCOMPARE(taken, posted);
        output.offer("taken\n");
        QCOMPARE(pipe.read(100), "taken\n");
    }
};

} // namespace velometer

VELOMETER_TEST(OutputTest)
#include "output_test.moc"
