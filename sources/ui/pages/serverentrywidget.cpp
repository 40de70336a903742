#include "ui/pages/serverentrywidget.h"

#include "data/testserver.h"
#include "ui/theme/theme.h"

#include "ui_serverentrywidget.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace velometer {

ServerEntryWidget::ServerEntryWidget(QWidget *parent, TestServer *entryServer)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ServerEntryWidget>())
    , server(entryServer)
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
    // A button that took the press would keep the list from scrolling.
    ui->checkBox->setAttribute(Qt::WA_TransparentForMouseEvents);
    ui->labelServerAdress->setText(server->getHostname() + u':' +
                                   QString::number(server->getPort()));
    retranslate();
    dress();
}

ServerEntryWidget::~ServerEntryWidget() = default;

void ServerEntryWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        dress();
    }
}

void ServerEntryWidget::dress()
{
    const Theme::Colours &colours = Theme::paper();
    ui->checkBox->setIcon(Theme::checkIcon(u"checkbox"_s, colours.quiet, colours.accent));
}

void ServerEntryWidget::setServerEnabled(bool enabled)
{
    ui->checkBox->setChecked(enabled);
}

void ServerEntryWidget::setLastEntry(bool last)
{
    ui->line->setVisible(!last);
}

void ServerEntryWidget::tap()
{
    ui->checkBox->click();
}

void ServerEntryWidget::retranslate()
{
    ui->labelServerName->setText(server->getName());
    ui->checkBox->setAccessibleName(server->getName());
}

void ServerEntryWidget::on_checkBox_clicked()
{
    // A click on the server that is already chosen has just removed its mark.
    setServerEnabled(true);
    Q_EMIT chosen(server);
}

} // namespace velometer
