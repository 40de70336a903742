#include "ui/pages/linkstab.h"

#include "utils/deployment.h"
#include "utils/utils.h"

#include "ui_linkstab.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Empty before the service has given one. The settings are a file that anyone may edit.
QString userId()
{
    const qlonglong id = Utils::getSettingsCommonValue(u"UserId"_s).toLongLong();
    return id > 0 ? QString::number(id) : QString();
}

} // namespace

LinksTab::LinksTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::LinksTab>())
{
    ui->setupUi(this);
    fillFrame();
    reset();
}

LinksTab::~LinksTab() = default;

void LinksTab::retranslate()
{
    ui->retranslateUi(this);
    reset();
}

void LinksTab::showEvent(QShowEvent *event)
{
    TabBase::showEvent(event);
    reset();
}

void LinksTab::reset()
{
    const bool hasPage = !userId().isEmpty();
    ui->websiteButton->setEnabled(hasPage);
    ui->labelNoUserId->setVisible(!hasPage);
    ui->notice->hide();
}

void LinksTab::on_websiteButton_clicked()
{
    const QString address = Deployment::current().webAddress() +
                            "/velometer/Controller?page=UserReport&userid="_L1 + userId();
    Utils::addLogEntry("URL: "_L1 + address);
    ui->notice->openPage(address);
}

void LinksTab::on_feedbackButtun_clicked()
{
    const QString mailbox = Deployment::current().feedbackMailbox;
    const QString address =
        u"mailto:%1?subject=Zenta Velometer Feedback (UserId:%2 Version:%3)"_s.arg(
            mailbox, userId(), Utils::getPlainVersion());
    ui->notice->openMail(address, mailbox);
    Utils::addLogEntry("URL (Qt): "_L1 + address);
}

} // namespace velometer
