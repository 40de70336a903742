#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

class QObject;

namespace velometer {

/// The ids of user, series and test, as the settings of the family keep them. An id is drawn once:
/// under a lock that all programs share it is read again, saved, and used only then; whatever
/// becomes of the test, it is not given again. Main thread only.
class TestIds
{
public:
    /// Reads what is saved; all three are 0 while no user id is there.
    TestIds();

    qlonglong getUserId() const { return user; }
    qlonglong getSeriesId() const { return series; } ///< from 1 on once there is a user
    qlonglong getTestId() const { return test; }     ///< of the last test drawn, 0 before

    /// Reads again: another program may have got a user id, or drawn on.
    void load();

    /// Draws the next test's id and then calls @p done, at once when the lock is free; a lock that
    /// another program holds is waited for without blocking, for as long as @p context lives. The
    /// lock of a program that hangs is broken after half a minute. Without a user id the one of
    /// assignUser() is saved first, unless another program has saved one meanwhile.
    void draw(QObject *context, const std::function<void()> &done);

    /// Takes the service's answer "...;user;series": its next series is ours. Anything else gives
    /// a user id of 53 random bits and series 1: a test is worth more than a proper id. Saved with
    /// the next draw().
    void assignUser(bool ok, const QString &answer);

    /// The service has deleted @p gone, if that is still the user, and everything of his: the next
    /// test asks for a new one. Calls nobody.
    void forgetUser(QObject *context, qlonglong gone);

    /// The next series, whose tests count from 1; then calls @p done as draw() does.
    void startNewSeries(QObject *context, const std::function<void()> &done);

private:
    void underLock(QObject *context, void (TestIds::*change)(), const std::function<void()> &done);
    void nextTest();
    void nextSeries();
    void noUser();
    void save() const;

    qlonglong user = 0;
    qlonglong series = 0;
    qlonglong test = 0;
};

} // namespace velometer
