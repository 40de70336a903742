#include "ui/popups/popupbase.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

namespace velometer {

PopupBase::PopupBase(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_StyledBackground);
}

void PopupBase::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

QList<QWidget *> PopupBase::stops() const
{
    QList<QWidget *> found;
    const auto children = findChildren<QWidget *>();
    for (QWidget *child : children) {
        if ((child->focusPolicy() & Qt::TabFocus) && child->isVisible() && child->isEnabled() &&
            !child->focusProxy()) {
            found.append(child);
        }
    }
    return found;
}

bool PopupBase::focusNextPrevChild(bool next)
{
    const QList<QWidget *> all = stops();
    if (all.isEmpty()) {
        return false;
    }
    const qsizetype last = all.size() - 1;
    const qsizetype here = all.indexOf(focusWidget());
    const qsizetype there = next ? here + 1 : here - 1;
    QWidget *target = all.at(there > last ? 0 : there < 0 ? last : there);
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

QWidget *PopupBase::focusedFirst()
{
    const QList<QWidget *> all = stops();
    return all.isEmpty() ? this : all.first();
}

void PopupBase::describe()
{
    const auto *title = findChild<QLabel *>(u"labelTitle"_s);
    if (!title) {
        title = findChild<QLabel *>(u"labelLocation"_s);
    }
    const auto *message = findChild<QLabel *>(u"labelMessage"_s);
    const QString name = title ? title->text() : QString();
    const QString question =
        message ? QTextDocumentFragment::fromHtml(message->text()).toPlainText() : QString();
    // Not every screen reader says what surrounds the widget with the focus. Where the title is the
    // question, it is what the answers need.
    focusedFirst()->setAccessibleDescription(question.isEmpty() ? name : question);
    setAccessibleName(name);
    setAccessibleDescription(question);
}

void PopupBase::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    describe();
    // So that the keyboard finds its way, and nothing is highlighted for a finger.
    focusedFirst()->setFocus(Qt::PopupFocusReason);
}

void PopupBase::keyPressEvent(QKeyEvent *event)
{
    // No key that the popup does not know may reach the page below.
    event->accept();
    if (event->key() != Qt::Key_Escape) {
        return;
    }
    for (const auto &name : {u"buttonCancel"_s, u"buttonOk"_s}) {
        if (auto *button = findChild<QAbstractButton *>(name); button && !button->isHidden()) {
            return button->click();
        }
    }
}

} // namespace velometer
