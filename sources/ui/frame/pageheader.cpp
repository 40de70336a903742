#include "ui/frame/pageheader.h"

#include "utils/utils.h"

#include "ui_pageheader.h"

namespace velometer {

PageHeader::PageHeader(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::PageHeader>())
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
}

PageHeader::~PageHeader() = default;

void PageHeader::fill()
{
    ui->labelTitle->setText(Utils::getAppTitle());
    ui->versionLabel->setText(Utils::getVersion());
}

void PageHeader::retranslate()
{
    ui->retranslateUi(this);
}

} // namespace velometer
