#pragma once

#include "measurement/testobserver.h"
#include "utils/clocktimer.h"

#include <QObject>
#include <QString>

namespace velometer {

class TestController;
class TestSeries;
class TestTab;
struct TestOutcome;

/// Shows on the test page what a test reports and how far its series is: a single test has its
/// status on the start button, a series on the line of the transferred data, with a count-down
/// between two tests. Tells at the end what must be known: a result that was lost, a budget that
/// was reached, a report that waits. Main thread only.
class TestDisplay : public QObject, public TestObserver
{
    Q_OBJECT

public:
    /// @p page is borrowed and outlives the display.
    TestDisplay(TestTab *page, QObject *parent);

    /// Borrowed; both outlive the display's use, or are taken away again with null.
    void watch(TestController *controller, TestSeries *series);

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

    /// A series waits for its next test: counts down to it.
    void awaitNext();
    /// Nothing of the test or series happens any more.
    void seriesEnded();

Q_SIGNALS:
    /// Something that the user must see; @p text is rich text.
    void notice(const QString &title, const QString &text);

private:
    bool inSeries() const;
    void offerAbort();
    void updateScreenNextMeasurement();
    void testsMissed(int first, int last);
    void testEnded(const TestOutcome &outcome);

    TestTab *testTab;
    TestController *controller = nullptr;
    TestSeries *series = nullptr;
    bool stoprequestedflag = false;
    bool resultLost = false; ///< a test could not be stored, and the user has not heard of it
    ClockTimer countDown;
};

} // namespace velometer
