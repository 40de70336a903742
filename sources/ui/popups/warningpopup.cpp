#include "ui/popups/warningpopup.h"

#include "ui/mainwindow.h"
#include "utils/utils.h"

#include "ui_warningpopup.h"

using namespace Qt::StringLiterals;

namespace velometer {

WarningPopup::WarningPopup(MainWindow *mainWindow)
    : PopupBase(mainWindow)
    , ui(std::make_unique<Ui::WarningPopup>())
{
    ui->setupUi(this);
}

WarningPopup::~WarningPopup() = default;

void WarningPopup::setTitel(const QString &title)
{
    ui->labelTitle->setText(title);
    describe();
}

void WarningPopup::setMessage(const QString &message)
{
    ui->labelMessage->setText(message);
    // While they are hidden the frames do not hear of it, and would ask for the height of before.
    ui->frame_2->updateGeometry();
    ui->frame->updateGeometry();
    describe();
}

void WarningPopup::setOKButtonText(const QString &text)
{
    ui->buttonOk->setText(text);
}

void WarningPopup::setCancelButtonText(const QString &text)
{
    ui->buttonCancel->setText(text);
}

void WarningPopup::retranslate()
{
    ui->retranslateUi(this);
}

QWidget *WarningPopup::focusedFirst()
{
    return ui->buttonCancel;
}

void WarningPopup::on_buttonOk_clicked()
{
    Utils::addLogEntry(u"OK clicked"_s);
    mw->warningPopupOkClicked();
}

void WarningPopup::on_buttonCancel_clicked()
{
    Utils::addLogEntry(u"Cancel clicked"_s);
    mw->warningPopupCancelClicked();
}

} // namespace velometer
