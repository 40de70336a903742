#pragma once

#include "measurement/testobserver.h"
#include "ui/liverate.h"
#include "utils/clocktimer.h"

#include <QObject>
#include <QString>

namespace velometer {

class DBTestResults;
class TestController;
class TestSeries;
class TestTab;
struct TestOutcome;

/// Shows on the test page what a test reports and how far its series is: a single test has its
/// status on the start button, a series on the line of the transferred data, with a count-down
/// between two tests. While something is measured its rate of the last second stands large above
/// the fields, five times a second; after 3 s in which nothing was heard the page says what the
/// test waits for. Tells at the end what must be known: a result that was lost, a budget that
/// was reached, a report that waits. Main thread only.
class TestDisplay : public QObject, public TestObserver
{
    Q_OBJECT

public:
    /// @p page is borrowed and outlives the display.
    TestDisplay(TestTab *page, QObject *parent);

    /// Borrowed; both outlive the display's use, or are taken away again with null.
    void watch(TestController *controller, TestSeries *series);

    /// "Last test, 16:11" and below "38412 / 14980 kBit/s, 31 ms", of what a list shows of a test.
    static QString summary(const DBTestResults &test);
    /// That a test or series is over, for who looks elsewhere.
    static QString endText(const TestSeries &series);

    /// Everything is agreed, and a test is about to begin.
    void prepare();
    /// The user wants the series to end.
    void requestStop();

    // TestObserver
    void setStatus(QString text) override;
    void setProgressMax(int max) override;
    void setProgressValue(int value) override;
    void setProgress(int value, int max) override;
    void startTest() override;
    void stopTest() override;
    void setDownloadText(QString text) override;
    void setUploadText(QString text) override;
    void setRTTText(QString text) override;
    void setDataTransferred(QString text) override;
    void setErrorText(QString text) override;
    bool stopRequested() override { return stoprequestedflag; }
    void setInformation(QString server, QString seriesId, QString testId,
                        QString position) override;
    void setThroughput(int resulttype, int interval, qint64 bytes) override;
    void setRoundTrip(qint64 time) override;
    void setDelayUnderLoad(int resulttype, qint64 at, qint64 delay) override;

    /// A series waits for its next test: counts down to it.
    void awaitNext();
    /// Nothing of the test or series happens any more.
    void seriesEnded();

Q_SIGNALS:
    /// Something that the user must see; @p text is rich text.
    void notice(const QString &title, const QString &text);
    /// What runs now, for the other pages; empty: nothing.
    void running(const QString &text);

private:
    bool inSeries() const;
    void offerAbort();
    void updateScreenNextMeasurement();
    void testsMissed(int first, int last);
    void testEnded(const TestOutcome &outcome);
    void tellRunning(const QString &text);
    void heard();
    void look();
    QString awaited() const;

    TestTab *testTab;
    TestController *controller = nullptr;
    TestSeries *series = nullptr;
    bool stoprequestedflag = false;
    bool resultLost = false; ///< a test could not be stored, and the user has not heard of it
    ClockTimer countDown;
    ClockTimer lookAgain; ///< while a test runs
    LiveRate rate;
    qint64 heardUs = 0; ///< when the test last said something, by the steady clock
};

} // namespace velometer
