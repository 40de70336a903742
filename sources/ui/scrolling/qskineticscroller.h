#pragma once

#include <QObject>

#include <memory>

class QAbstractScrollArea;
class QMouseEvent;

namespace velometer {

class QsKineticScrollerImpl;

/// Lets a scroll area (a text browser is one) follow the finger and coast after it is lifted.
///
/// Takes the left button's presses, moves and releases from the area and its viewport; a tap, which
/// is a press and a release with at most four moves between them, is given back as a synthetic
/// click on what received the release. A flick too short for that counts all the same, and on long
/// contents a finger near the scroll bar's thumb drags it. The wheel, the keyboard and the other
/// buttons pass. A child of the area sees presses before the scroller does: one that takes them (a
/// button) has to be transparent for mouse events, or the area does not scroll from there.
///
/// The area is borrowed and may be deleted at any time. Main thread only.
class QsKineticScroller : public QObject
{
    Q_OBJECT

public:
    explicit QsKineticScroller(QObject *parent = nullptr);
    ~QsKineticScroller() override;

    /// Leaves the area served before; null is ignored.
    void enableKineticScrollFor(QAbstractScrollArea *scrollArea);

Q_SIGNALS:
    /// This press is no tap: it took hold of content that was still coasting.
    void coastingStopped();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

protected Q_SLOTS:
    void onKineticTimerElapsed();

private:
    bool pressed(QObject *object, const QMouseEvent *event);
    bool moved(QObject *object, const QMouseEvent *event);
    bool released(QObject *object);

    const std::unique_ptr<QsKineticScrollerImpl> d;
};

} // namespace velometer
