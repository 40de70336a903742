#include "ui/popups/errorpopup.h"

#include "ui/mainwindow.h"
#include "utils/utils.h"

#include "ui_errorpopup.h"

using namespace Qt::StringLiterals;

namespace velometer {

ErrorPopup::ErrorPopup(MainWindow *mainWindow)
    : PopupBase(mainWindow)
    , ui(std::make_unique<Ui::ErrorPopup>())
{
    ui->setupUi(this);
}

ErrorPopup::~ErrorPopup() = default;

void ErrorPopup::setTitel(const QString &title)
{
    ui->labelTitle->setText(title);
    describe();
}

void ErrorPopup::setMessage(const QString &message)
{
    ui->labelMessage->setText(message);
    // While they are hidden the frames do not hear of it, and would ask for the height of before.
    ui->frame_2->updateGeometry();
    ui->frame->updateGeometry();
    describe();
}

void ErrorPopup::setOKButtonText(const QString &text)
{
    ui->buttonOk->setText(text);
}

void ErrorPopup::retranslate()
{
    ui->retranslateUi(this);
}

void ErrorPopup::on_buttonOk_clicked()
{
    Utils::addLogEntry(u"OK clicked"_s);
    mw->errorPopupOkClicked();
}

} // namespace velometer
