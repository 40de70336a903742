#pragma once

#include <QObject>

namespace velometer {

class BackgroundNotice;
class DBTestResults;
class TestSession;
class TestTab;

/// Tells of the test that ended last: on the test page, one tap away from its details, and through
/// the desktop to who is elsewhere. Main thread only.
class LastTest : public QObject
{
    Q_OBJECT

public:
    /// @p page and @p session are borrowed and outlive this one's use; gDB is open.
    LastTest(TestTab *page, TestSession *session, QObject *parent);

    /// After something else than a test has changed what is stored.
    void refresh();

Q_SIGNALS:
    /// The user wants its details. @p results are valid during the signal.
    void opened(const DBTestResults *results);

private:
    void open();
    void ended();

    TestTab *testTab;
    TestSession *session;
    BackgroundNotice *background;
};

} // namespace velometer
