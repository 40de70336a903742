#include "ui/frame/chipbar.h"

#include "ui/frame/tabplace.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>

namespace velometer {

namespace {

constexpr int chipRowHeight = 48; // px: a finger's 44 and the ring around it
constexpr int chipSpacing = 8;
constexpr int chipDragStart = 8;

} // namespace

ChipBar::ChipBar(QWidget *parent)
    : QScrollArea(parent)
{
    auto *contents = new QWidget(this);
    contents->setObjectName(QStringLiteral("scrollAreaWidgetContents"));
    row = new QHBoxLayout(contents);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(chipSpacing);
    row->addStretch(1);
    setWidget(contents);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    viewport()->installEventFilter(this);
}

QSize ChipBar::sizeHint() const
{
    return {0, chipRowHeight};
}

QSize ChipBar::minimumSizeHint() const
{
    return {0, chipRowHeight};
}

QPushButton *ChipBar::addChip(const QString &name)
{
    auto *chip = new QPushButton(widget());
    chip->setObjectName(name);
    chip->setProperty("role", QStringLiteral("chip"));
    chip->setAutoDefault(true);
    chip->setFocusPolicy(Qt::TabFocus);
    const QLayoutItem *last = row->itemAt(row->count() - 2);
    row->insertWidget(row->count() - 1, chip);
    TabPlace::putBehind(last ? last->widget() : this, chip); // where the bar stands
    chip->installEventFilter(this);
    return chip;
}

void ChipBar::setChip(QPushButton *chip, const QString &text, bool set)
{
    chip->setText(text);
    chip->setAccessibleName(QString(text).remove(choiceMark));
    chip->setAccessibleDescription(set ? tr("filtered by this") : QString());
    if (chip->property("set").toBool() != set) {
        chip->setProperty("set", set);
        chip->style()->unpolish(chip);
        chip->style()->polish(chip);
    }
}

bool ChipBar::eventFilter(QObject *object, QEvent *event)
{
    auto *from = qobject_cast<QWidget *>(object);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        pressedAt = from->mapTo(this, static_cast<QMouseEvent *>(event)->position().toPoint()).x();
        scrolledAtPress = horizontalScrollBar()->value();
        dragging = false;
        return false;
    case QEvent::MouseMove: {
        if (!pressedAt) {
            return false;
        }
        const int x =
            from->mapTo(this, static_cast<QMouseEvent *>(event)->position().toPoint()).x();
        dragging = dragging || std::abs(x - *pressedAt) > chipDragStart;
        if (dragging) {
            if (auto *chip = qobject_cast<QPushButton *>(from)) {
                chip->setDown(false);
            }
            horizontalScrollBar()->setValue(scrolledAtPress - (x - *pressedAt));
        }
        return dragging;
    }
    case QEvent::MouseButtonRelease:
        pressedAt.reset();
        // A chip that was let go while it slid has not been pressed; it is up already.
        return std::exchange(dragging, false) && !qobject_cast<QPushButton *>(from);
    case QEvent::FocusIn: ensureWidgetVisible(from, chipSpacing, 0); return false;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Left && key != Qt::Key_Right) {
            return false;
        }
        for (int index = row->indexOf(from), step = key == Qt::Key_Left ? -1 : 1;;) {
            const QLayoutItem *next = row->itemAt(index += step);
            if (!next || !next->widget()) {
                return true;
            }
            if (next->widget()->isVisible()) {
                next->widget()->setFocus(Qt::TabFocusReason);
                return true;
            }
        }
    }
    default: return QScrollArea::eventFilter(object, event);
    }
}

} // namespace velometer
