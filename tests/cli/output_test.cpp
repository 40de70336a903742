#include "cli/output.h"

#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

/// What velometer-cli writes to, with the reader in the test's hand.
class Pipe
{
public:
    Pipe()
    {
        if (::pipe2(ends, O_CLOEXEC) != 0)
            qFatal("no pipe");
    }
    ~Pipe()
    {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    Q_DISABLE_COPY_MOVE(Pipe)

    int writeEnd() const { return ends[1]; }
    void closeReadEnd() { ::close(std::exchange(ends[0], -1)); }
    QByteArray read(qsizetype length)
    {
        QByteArray data(length, '\0');
        data.resize(::read(ends[0], data.data(), static_cast<size_t>(length)));
        return data;
    }
    QByteArray readExactly(qsizetype length)
    {
        QByteArray data;
        while (data.size() < length)
            data += read(length - data.size());
        return data;
    }

private:
    int ends[2] = {-1, -1};
};

class OutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { std::signal(SIGPIPE, SIG_IGN); }

    void goesOnWithoutAReader()
    {
        Pipe pipe;
        Output output(pipe.writeEnd());
        pipe.closeReadEnd();
        output.write("a\n");
        output.post("b\n");
        QCOMPARE(output.error(), QString());
    }

    void tellsOfAFullDisk()
    {
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        Output output(full);
        output.write("a\n");
        ::close(full);
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
        QCOMPARE(pipe.readExactly(4096), posted.left(4096));

        QByteArray rest;
        while (rest.size() < posted.size() - 4096) {
            output.post(QByteArray());
            rest += pipe.read(65536);
        }
        QCOMPARE(rest, posted.mid(4096));
        output.offer("taken\n");
        QCOMPARE(pipe.read(100), "taken\n");
    }
};

QTEST_APPLESS_MAIN(OutputTest)
#include "output_test.moc"
