#include "ui/popups/popupbase.h"

#include "ui/mainwindow.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

PopupBase::PopupBase(MainWindow *mainWindow)
    : QWidget(mainWindow)
    , mw(mainWindow)
{
    setAttribute(Qt::WA_StyledBackground);
}

void PopupBase::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}

QList<QWidget *> PopupBase::stops() const
{
    QList<QWidget *> found;
    const auto children = findChildren<QWidget *>();
    for (QWidget *child : children) {
        if ((child->focusPolicy() & Qt::TabFocus) && child->isVisible() && child->isEnabled() &&
            !child->focusProxy())
            found.append(child);
    }
    return found;
}

bool PopupBase::focusNextPrevChild(bool next)
{
    const QList<QWidget *> all = stops();
    if (all.isEmpty())
        return false;
    const qsizetype last = all.size() - 1;
    const qsizetype here = all.indexOf(focusWidget());
    const qsizetype there = next ? here + 1 : here - 1;
    QWidget *target = all.at(there > last ? 0 : there < 0 ? last : there);
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void PopupBase::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    const QList<QWidget *> all = stops();
    // So that the keyboard finds its way, and nothing is highlighted for a finger.
    if (!all.isEmpty())
        all.first()->setFocus(Qt::PopupFocusReason);
}

void PopupBase::keyPressEvent(QKeyEvent *event)
{
    // No key that the popup does not know may reach the page below.
    event->accept();
    if (event->key() != Qt::Key_Escape)
        return;
    for (const auto &name : {u"buttonCancel"_s, u"buttonOk"_s}) {
        if (auto *button = findChild<QAbstractButton *>(name))
            return button->click();
    }
}
