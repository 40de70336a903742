#pragma once

#include <QTimer>

namespace velometer {

/// Tells when the first frame of a widget is on the screen, so that what takes time comes after it;
/// or a second later where nobody paints it, as a minimised window. Main thread only.
class FirstFrame : public QObject
{
    Q_OBJECT

public:
    /// @p widget is the parent.
    explicit FirstFrame(QWidget *widget);

Q_SIGNALS:
    /// Once, from the event loop.
    void shown();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTimer timer;
};

} // namespace velometer
