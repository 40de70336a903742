#include "ui/frame/pageheader.h"

#include "ui/theme/theme.h"
#include "utils/utils.h"

#include "ui_pageheader.h"

namespace velometer {

namespace {

// px
constexpr int givenMargin = 8;
constexpr int sideMargin = 16;
constexpr int rowMargin = 6;

} // namespace

PageHeader::PageHeader(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::PageHeader>())
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
    ui->buttonRunning->hide();
}

PageHeader::~PageHeader() = default;

void PageHeader::fill(const QString &title)
{
    const bool given = Theme::isGiven();
    const bool ofProgram = given || title.isEmpty();
    ui->labelTitle->setText(ofProgram ? Utils::getAppTitle() : title);
    ui->versionLabel->setText(Utils::getVersion());
    ui->versionLabel->setVisible(ofProgram || title == Utils::getAppTitle());
    ui->orvakLink->setVisible(given);
    ui->buttonClose->setVisible(given);
    ui->horizontalLayout->setContentsMargins(given ? givenMargin : sideMargin, rowMargin,
                                             given ? givenMargin : sideMargin, rowMargin);
}

void PageHeader::setRunning(const QString &text)
{
    ui->buttonRunning->setText(text);
    ui->buttonRunning->setVisible(!text.isEmpty());
}

void PageHeader::retranslate()
{
    ui->retranslateUi(this);
}

} // namespace velometer
