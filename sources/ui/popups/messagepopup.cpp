#include "ui/popups/messagepopup.h"

#include "utils/utils.h"

#include "ui_messagepopup.h"

using namespace Qt::StringLiterals;

namespace velometer {

MessagePopup::MessagePopup(QWidget *parent)
    : PopupBase(parent)
    , ui(std::make_unique<Ui::MessagePopup>())
{
    ui->setupUi(this);
}

MessagePopup::~MessagePopup() = default;

void MessagePopup::setMessage(const Message &message)
{
    ui->labelTitle->setText(message.title);
    ui->labelMessage->setText(message.text);
    ui->buttonOk->setText(message.accept);
    ui->buttonOk->setVisible(!message.accept.isEmpty());
    ui->buttonCancel->setText(message.cancel);
    ui->buttonCancel->setVisible(!message.cancel.isEmpty());
    ui->labelPleaseWait->setVisible(message.accept.isEmpty() && message.cancel.isEmpty());
    // A hidden frame does not notice that its contents changed, and would keep its old height.
    ui->frame_2->updateGeometry();
    ui->frame->updateGeometry();
    describe();
}

void MessagePopup::retranslate()
{
    ui->retranslateUi(this);
}

QWidget *MessagePopup::focusedFirst()
{
    return ui->buttonCancel->isHidden() ? PopupBase::focusedFirst() : ui->buttonCancel;
}

void MessagePopup::on_buttonOk_clicked()
{
    Utils::addLogEntry(u"OK clicked"_s);
    Q_EMIT accepted();
}

void MessagePopup::on_buttonCancel_clicked()
{
    Utils::addLogEntry(u"Cancel clicked"_s);
    Q_EMIT cancelled();
}

} // namespace velometer
