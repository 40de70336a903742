#include "ui/frame/tabbase.h"

#include "ui/frame/navigationbar.h"
#include "ui/frame/pageheader.h"
#include "utils/utils.h"

#include <QEvent>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace velometer {

TabBase::TabBase(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_StyledBackground);
}

void TabBase::fillFrame()
{
    if (auto *header = findChild<PageHeader *>()) {
        header->fill(windowTitle());
    }
}

void TabBase::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange && findChild<PageHeader *>()) {
        fillFrame();
        dress();
    }
    if (event->type() != QEvent::LanguageChange) {
        return;
    }
    if (auto *header = findChild<PageHeader *>()) {
        header->retranslate();
    }
    if (auto *navigation = findChild<NavigationBar *>()) {
        navigation->retranslate();
    }
    retranslate();
    fillFrame();
}

void TabBase::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool alt = event->modifiers().testFlag(Qt::AltModifier);
    if (key == Qt::Key_Escape || key == Qt::Key_Back || (alt && key == Qt::Key_Left)) {
        Q_EMIT backClicked();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void TabBase::setNavigationBeside(bool beside)
{
    if (auto *navigation = findChild<NavigationBar *>()) {
        navigation->setVisible(!beside);
    }
}

void TabBase::setRunning(const QString &text)
{
    if (auto *header = findChild<PageHeader *>()) {
        header->setRunning(text);
    }
}

void TabBase::on_buttonRunning_clicked()
{
    Q_EMIT pageClicked(Page::Test);
}

void TabBase::on_buttonTest1_clicked()
{
    Utils::addLogEntry(u"Test1 Clicked"_s);
    Q_EMIT pageClicked(Page::Test);
}

void TabBase::on_buttonTest2_clicked()
{
    Utils::addLogEntry(u"Test2 Clicked"_s);
    Q_EMIT pageClicked(Page::Test);
}

void TabBase::on_buttonResults1_clicked()
{
    Utils::addLogEntry(u"Results1 Clicked"_s);
    Q_EMIT pageClicked(Page::Results);
}

void TabBase::on_buttonResults2_clicked()
{
    Utils::addLogEntry(u"Results2 Clicked"_s);
    Q_EMIT pageClicked(Page::Results);
}

void TabBase::on_buttonSettings1_clicked()
{
    Utils::addLogEntry(u"Settings1 Clicked"_s);
    Q_EMIT pageClicked(Page::Settings);
}

void TabBase::on_buttonSettings2_clicked()
{
    Utils::addLogEntry(u"Settings2 Clicked"_s);
    Q_EMIT pageClicked(Page::Settings);
}

void TabBase::on_buttonLinks1_clicked()
{
    Utils::addLogEntry(u"Links1 Clicked"_s);
    Q_EMIT pageClicked(Page::Links);
}

void TabBase::on_buttonLinks2_clicked()
{
    Utils::addLogEntry(u"Links2 Clicked"_s);
    Q_EMIT pageClicked(Page::Links);
}

void TabBase::on_buttonAbout1_clicked()
{
    Utils::addLogEntry(u"About1 Clicked"_s);
    Q_EMIT pageClicked(Page::About);
}

void TabBase::on_buttonAbout2_clicked()
{
    Utils::addLogEntry(u"About2 Clicked"_s);
    Q_EMIT pageClicked(Page::About);
}

void TabBase::on_orvakLink_clicked()
{
    Q_EMIT makerClicked();
}

void TabBase::on_buttonClose_clicked()
{
    Utils::addLogEntry(u"Exit Clicked"_s);
    Q_EMIT exitClicked();
}

} // namespace velometer
