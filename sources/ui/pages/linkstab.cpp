#include "ui/pages/linkstab.h"

#include "app/qrcode.h"
#include "app/userpage.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "ui_linkstab.h"

#include <QPainter>
#include <QPixmap>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int moduleSize = 4; // px
constexpr int quietZone = 4;  // modules; a reader needs them

QString pageAddress()
{
    return Deployment::current().webAddress() + "/velometer/Controller?page=UserReport&userid="_L1 +
           UserPage::userId();
}

QPixmap picture(const QrCode &code)
{
    const int side = (code.size() + 2 * quietZone) * moduleSize;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    for (int y = 0; y < code.size(); ++y) {
        for (int x = 0; x < code.size(); ++x) {
            if (code.isDark(x, y)) {
                painter.fillRect((x + quietZone) * moduleSize, (y + quietZone) * moduleSize,
                                 moduleSize, moduleSize, Qt::black);
            }
        }
    }
    return pixmap;
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
    const bool hasPage = !UserPage::userId().isEmpty();
    const auto code = hasPage ? QrCode::of(pageAddress()) : std::nullopt;
    ui->qrCode->setPixmap(code ? picture(*code) : QPixmap());
    ui->qrCode->setVisible(code.has_value());
    ui->labelQrCode->setVisible(code.has_value());
    ui->websiteButton->setEnabled(hasPage);
    ui->labelNoUserId->setVisible(!hasPage);
    ui->notice->hide();
}

void LinksTab::openPage(const QString &address)
{
    ui->notice->openPage(address);
}

void LinksTab::on_websiteButton_clicked()
{
    const QString address = pageAddress();
    Utils::addLogEntry("URL: "_L1 + address);
    openPage(address);
}

void LinksTab::on_feedbackButtun_clicked()
{
    const QString mailbox = Deployment::current().feedbackMailbox;
    const QString address =
        u"mailto:%1?subject=Zenta Velometer Feedback (UserId:%2 Version:%3)"_s.arg(
            mailbox, UserPage::userId(), Utils::getPlainVersion());
    ui->notice->openMail(address, mailbox);
    Utils::addLogEntry("URL (Qt): "_L1 + address);
}

} // namespace velometer
