#include "ui/popups/choicepopup.h"

#include "ui/theme/theme.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qsizetype mostOptions = 100;
constexpr int optionHeight = 48; // px
/// More have to be scrolled to; the half row tells that there are more.
constexpr int optionsAtOnce = 7;
constexpr int checkSize = 20;

} // namespace

ChoicePopup::ChoicePopup(QWidget *parent)
    : PopupBase(parent)
    , title(new QLabel(this))
    , area(new QScrollArea(this))
    , cancel(new QPushButton(this))
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *frame = new QFrame(this);
    frame->setObjectName(u"frame"_s);
    outer->addWidget(frame);
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(16, 14, 16, 16);
    layout->setSpacing(10);
    title->setObjectName(u"labelTitle"_s);
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);
    layout->addWidget(title);
    auto *contents = new QWidget(area);
    contents->setObjectName(u"scrollAreaWidgetContents"_s);
    rows = new QVBoxLayout(contents);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    area->setWidget(contents);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout->addWidget(area);
    cancel->setObjectName(u"buttonCancel"_s);
    cancel->setProperty("role", u"cancel"_s);
    cancel->setAutoDefault(true);
    connect(cancel, &QPushButton::clicked, this, &PopupBase::cancelled);
    layout->addWidget(cancel);
    retranslate();
}

void ChoicePopup::retranslate()
{
    cancel->setText(tr("Cancel"));
}

void ChoicePopup::setChoice(const Choice &choice)
{
    title->setText(choice.title);
    while (QLayoutItem *item = rows->takeAt(0)) {
        // One of them may be the button whose press brought the next choice.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    currentRow = nullptr;
    const auto count = static_cast<int>(std::min(choice.options.size(), mostOptions));
    for (int index = 0; index < count; ++index) {
        auto *row = new QPushButton(choice.options.at(index), area->widget());
        row->setProperty("role", u"option"_s);
        row->setAutoDefault(true);
        row->setMinimumHeight(optionHeight);
        const bool isCurrent = index == choice.current;
        if (isCurrent) {
            currentRow = row;
            row->setProperty("set", true);
            row->setIcon(Theme::icon(u"check"_s, Theme::colours().accent));
            row->setIconSize({checkSize, checkSize});
            row->setLayoutDirection(Qt::LeftToRight);
            row->setAccessibleDescription(tr("current"));
        }
        connect(row, &QPushButton::clicked, this, [this, index] { Q_EMIT chosen(index); });
        rows->addWidget(row);
    }
    const int shown = std::min(count, optionsAtOnce) * optionHeight;
    area->setFixedHeight(count > optionsAtOnce ? shown + optionHeight / 2 : shown);
    // A hidden frame does not notice that its contents changed, and would keep its old height.
    area->parentWidget()->layout()->invalidate();
    area->parentWidget()->updateGeometry();
    layout()->invalidate();
    describe();
}

QWidget *ChoicePopup::focusedFirst()
{
    return currentRow ? currentRow : PopupBase::focusedFirst();
}

void ChoicePopup::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
        event->accept();
        focusNextPrevChild(event->key() == Qt::Key_Down);
        if (QWidget *row = focusWidget(); row && area->isAncestorOf(row)) {
            area->ensureWidgetVisible(row, 0, optionHeight / 2);
        }
        return;
    }
    PopupBase::keyPressEvent(event);
}

} // namespace velometer
