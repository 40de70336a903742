#include "ui/scrolling/qskineticscroller.h"

#include "support/registeredtest.h"

#include <QAbstractScrollArea>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QScrollBar>

namespace velometer {

namespace {

void send(QWidget *to, QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, to->mapToGlobal(at), isMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(to, &event);
}

/// 1000 px of content that counts the clicks it gets.
class Area : public QAbstractScrollArea
{
public:
    explicit Area(bool takes)
        : takesClicks(takes)
    {
        resize(300, 400);
        verticalScrollBar()->setRange(0, 1000);
        verticalScrollBar()->setValue(500);
        scroller.enableKineticScrollFor(this);
    }

    void tick() { QMetaObject::invokeMethod(&scroller, "onKineticTimerElapsed"); }

    int clicks = 0;
    QsKineticScroller scroller;

protected:
    void mousePressEvent(QMouseEvent *event) override { event->setAccepted(takesClicks); }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        ++clicks;
        event->setAccepted(takesClicks);
    }

private:
    const bool takesClicks;
};

} // namespace

class QsKineticScrollerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A gesture: p, m and r are press, move and release at that y; t is that many ticks of the
    // timer.
    void followsTheFingerAndClicksOnTaps_data()
    {
        const Rows<QString, int, int> row("gesture", "position", "clicks");
        const QString fling = u"p200 m199 m198 m197 m196 m195 t1 m155 t1 r155 "_s;

        row("a still finger is a tap", "p200 r200", 500, 1);
        row("four moves are still a tap", "p200 m203 m206 m209 m212 r212", 500, 1);
        row("the fifth move begins a drag", "p200 m198 m196 m194 m192 m190 r190", 500, 0);
        row("content follows from the press on", "p200 m198 m196 m194 m192 m190 m170 r170", 530, 0);
        row("a flick of less than a tick coasts", "p200 m198 m196 m194 m192 m190 m170 r170 t1",
            530 + 19, 0);
        row("and one of few moves", "p200 m180 m150 r150 t1", 550 + 29, 0);
        row("stops at the end", "p900 m800 m700 m600 m500 m400 m300 r300 t40", 1000, 0);
        row("a hovering pointer drags nothing", "m200 m190 m180 m170 m160 m150 m140", 500, 0);
        row("a finger that rests before it lifts", "p200 m199 m198 m197 m196 m195 m155 t2 r155 t3",
            545, 0);
        row("coasts at most 30 px a tick", fling + u"t1"_s, 545 + 29, 0);
        row("30 ticks later it stands and stays", fling + u"t40"_s, 980, 0);
        row("a press stops it and is no tap", fling + u"t2 p200 t1 r200 t1"_s, 545 + 29 + 28, 0);
        row("the next tap is one again", fling + u"t2 p200 r200 p200 r200"_s, 545 + 29 + 28, 1);
    }

    void followsTheFingerAndClicksOnTaps()
    {
        QFETCH(QString, gesture);
        const QHash<QChar, QEvent::Type> events{{u'p', QEvent::MouseButtonPress},
                                                {u'm', QEvent::MouseMove},
                                                {u'r', QEvent::MouseButtonRelease}};
        for (const bool takesClicks : {true, false}) {
            Area area(takesClicks);
            const QStringList steps = gesture.split(u' ');
            for (const QString &step : steps) {
                const int number = step.mid(1).toInt();
                for (int i = 0; step[0] == u't' && i < number; ++i) {
                    area.tick();
                }
                if (events.contains(step[0])) {
                    const int before = area.clicks;
                    send(area.viewport(), events[step[0]], QPointF(100, number));
                    QCOMPARE(area.clicks, before); // a click comes from the event loop
                    QCoreApplication::sendPostedEvents();
                }
            }
            QTEST(area.verticalScrollBar()->value(), "position");
            QTEST(area.clicks, "clicks");
        }
    }

    void followsTheFingerOnATurnedPage()
    {
        QGraphicsScene scene;
        auto *area = new Area(true);
        const QGraphicsProxyWidget *proxy = scene.addWidget(area);
        QGraphicsView view(&scene);
        view.rotate(270);
        view.scale(0.5, 0.5);
        view.resize(300, 300);
        view.show();
        const auto finger = [&](QEvent::Type type, int y) {
            send(view.viewport(), type, view.mapFromScene(proxy->mapToScene(QPointF(100, y))));
        };
        finger(QEvent::MouseButtonPress, 200);
        for (const int y : {198, 196, 194, 192, 190}) {
            finger(QEvent::MouseMove, y);
        }
        area->tick();
        finger(QEvent::MouseMove, 170);
        QCOMPARE(area->verticalScrollBar()->value(), 530);
        area->tick();
        finger(QEvent::MouseButtonRelease, 170);
        area->tick();
        QCOMPARE(area->verticalScrollBar()->value(), 530 + 19);
    }

    void leavesOtherButtonsAndTheWheelAlone()
    {
        Area area(true);
        area.show();
        send(area.viewport(), QEvent::MouseButtonPress, {100, 200}, Qt::RightButton);
        send(area.viewport(), QEvent::MouseButtonRelease, {100, 200}, Qt::RightButton);
        QCOMPARE(area.clicks, 1);

        QWheelEvent wheel({100, 200}, {100, 200}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(area.viewport(), &wheel);
        QVERIFY(area.verticalScrollBar()->value() > 500);
    }

    void aFingerNearTheThumbDragsIt()
    {
        Area area(true);
        area.verticalScrollBar()->setPageStep(400);
        area.show();
        const double right = area.viewport()->width() - 10.0;
        const auto dragFrom = [&](double x, double y) {
            area.verticalScrollBar()->setValue(0);
            send(area.viewport(), QEvent::MouseButtonPress, {x, y});
            send(area.viewport(), QEvent::MouseMove, {x, y + 100});
            const int value = area.verticalScrollBar()->value();
            send(area.viewport(), QEvent::MouseButtonRelease, {x, y + 100});
            for (int i = 0; i < 40; ++i) {
                area.tick();
            }
            return area.verticalScrollBar()->value() == value ? value : -1; // it does not coast
        };
        // Of 1400 px 400 are in view: the thumb takes two sevenths of its track.
        QCOMPARE(dragFrom(right, 60),
                 qRound(100'000.0 / area.verticalScrollBar()->height() * 7 / 5.0));
        for (const QPointF beside : {QPointF(right, 200), QPointF(right - 40, 60)}) {
            QCOMPARE(dragFrom(beside.x(), beside.y()), 0); // the content is dragged, at its top
        }
        send(area.viewport(), QEvent::MouseButtonPress, {right, 60});
        send(area.viewport(), QEvent::MouseButtonRelease, {right, 60});
        QCoreApplication::sendPostedEvents();
        QCOMPARE(area.clicks, 1); // a tap there is one
    }

    void servesOneAreaAtATime()
    {
        Area left(true);
        auto next = std::make_unique<Area>(true);
        left.scroller.enableKineticScrollFor(next.get());
        left.scroller.enableKineticScrollFor(nullptr);
        send(left.viewport(), QEvent::MouseButtonRelease, {100, 200});
        QCOMPARE(left.clicks, 1);

        for (int y = 200; y > 190; --y) {
            send(next->viewport(), y == 200 ? QEvent::MouseButtonPress : QEvent::MouseMove,
                 {100.0, double(y)});
        }
        next.reset();
        left.tick(); // with nothing left to scroll
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(QsKineticScrollerTest)
#include "qskineticscroller_test.moc"
