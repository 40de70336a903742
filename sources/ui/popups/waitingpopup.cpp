#include "ui/popups/waitingpopup.h"

#include "ui_waitingpopup.h"

namespace velometer {

WaitingPopup::WaitingPopup(MainWindow *mainWindow)
    : PopupBase(mainWindow)
    , ui(std::make_unique<Ui::WaitingPopup>())
{
    ui->setupUi(this);
}

WaitingPopup::~WaitingPopup() = default;

void WaitingPopup::setTitel(const QString &title)
{
    ui->labelTitle->setText(title);
    describe();
}

void WaitingPopup::setMessage(const QString &message)
{
    ui->labelMessage->setText(message);
    // While they are hidden the frames do not hear of it, and would ask for the height of before.
    ui->frame_2->updateGeometry();
    ui->frame->updateGeometry();
    describe();
}

void WaitingPopup::retranslate()
{
    ui->retranslateUi(this);
}

} // namespace velometer
