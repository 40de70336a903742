#pragma once

#include "ui/frame/tabbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class TestTab;
}

/// The page from which tests are started and on which they are watched. It holds no logic: what it
/// shows is written into it from outside, and its start button and location link only say that they
/// were pressed. A field keeps what was last written into it.
class TestTab : public TabBase
{
    Q_OBJECT

public:
    explicit TestTab(QWidget *parent);
    ~TestTab() override;

    /// Shown as a link that leads to the location popup.
    void setLocation(const QString &text);
    void setTestserver(const QString &text);
    void setTestSeries(const QString &text);
    void setPosition(const QString &text);
    void setDownloadText(const QString &text);
    void setUploadText(const QString &text);
    void setRTTText(const QString &text);
    void setDataTransferred(const QString &text);
    /// A further line below the transferred data.
    void addNote(const QString &text);
    /// Caption of the start button.
    void setStatusText(const QString &text);
    /// The same while the button ends a series.
    void setAbortCaption(const QString &text);
    void setProgressMaxValue(int max);
    void setProgressValue(int value);
    void showProgessBar(bool visible);
    /// The start button does nothing and shows it; enabling it, it starts a test again.
    void setGUIDisabled(bool disabled);

    /// The running measurement's curve, see ThroughputPlot.
    void clearThroughput();
    void addThroughput(int resulttype, int interval, qint64 bytes);

public Q_SLOTS:
    void on_buttonStartTest_clicked();
    void on_labelLocation_linkActivated(const QString &link);

Q_SIGNALS:
    void startClicked();
    void locationLinkClicked();

protected:
    void retranslate() override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setStartState(const char *state);
    bool isTestShown() const;
    void fitCaption();

    std::unique_ptr<Ui::TestTab> ui;
};

} // namespace velometer
