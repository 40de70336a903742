#pragma once

#include "ui/frame/tabbase.h"

#include <QString>

#include <memory>

namespace velometer {

namespace Ui {
class TestTab;
}

/// The page from which tests are started and on which they are watched. It holds no logic: what it
/// shows is written into it from outside, and its buttons and the location row only say that they
/// were pressed. A field keeps what was last written into it.
class TestTab : public TabBase
{
    Q_OBJECT

public:
    explicit TestTab(QWidget *parent);
    ~TestTab() override;

    /// Shown as a link that leads to the location popup, as the whole row does.
    void setLocation(const QString &text);
    /// A test or a series runs: the location stays, and says so.
    void setLocationFixed(bool fixed);
    /// @p name is left out where it says no more than @p host.
    void setTestserver(const QString &name, const QString &host);
    void setTestSeries(const QString &text);
    void setPosition(const QString &text);
    void setDownloadText(const QString &text);
    void setUploadText(const QString &text);
    void setRTTText(const QString &text);
    void setDataTransferred(const QString &text);
    /// A further line below the transferred data.
    void addNote(const QString &text);
    /// What a silent test waits for, in one sentence; empty: nothing.
    void setWaiting(const QString &text);
    /// The test that ended last, as a button that leads to it; empty: there is none.
    void setLastTest(const QString &text);
    /// Caption of the start button.
    void setStatusText(const QString &text);
    /// The same while the button ends a series.
    void setAbortCaption(const QString &text);
    void setProgressMaxValue(int max);
    void setProgressValue(int value);
    void showProgessBar(bool visible);
    /// The start button does nothing and shows it; enabling it, it starts a test again.
    void setGUIDisabled(bool disabled);
    /// Whether a test can be stopped now: a button for it stands beside the start button.
    void setStoppable(bool stoppable);

    /// The figure of what is measured now, as the largest thing on the page. @p resulttype as in
    /// Result.
    void setLive(int resulttype, const QString &figure, const QString &unit);
    void hideLive();

    /// The running measurement's curve, see ThroughputPlot.
    void clearThroughput();
    void addThroughput(int resulttype, int interval, qint64 bytes);
    void addDelay(int resulttype, qint64 at, qint64 delay);

public Q_SLOTS:
    void on_buttonStartTest_clicked();
    void on_buttonStop_clicked();
    void on_buttonLast_clicked();
    void on_labelLocation_linkActivated(const QString &link);

Q_SIGNALS:
    void startClicked();
    void stopClicked();
    void locationLinkClicked();
    void lastTestClicked();

protected:
    void retranslate() override;
    void dress() override;
    bool eventFilter(QObject *object, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setStartState(const char *state);
    bool isTestShown() const;
    void fitCaption();
    void showCards();

    std::unique_ptr<Ui::TestTab> ui;
    QString location;
    bool locationFixed = false;
};

} // namespace velometer
