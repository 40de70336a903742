#include "ui/frame/addressnotice.h"

#include "app/desktopopener.h"

#include "ui_addressnotice.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QUrl>

namespace velometer {

AddressNotice::AddressNotice(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::AddressNotice>())
{
    ui->setupUi(this);
    hide();
}

AddressNotice::~AddressNotice() = default;

void AddressNotice::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        hide(); // its sentence is in the other language
        ui->retranslateUi(this);
    }
}

void AddressNotice::openPage(const QString &address)
{
    open(address, address, tr("The browser should show this address now. If it does not, copy it:"),
         tr("No browser could be opened. Copy this address into the browser of another device:"));
}

void AddressNotice::openMail(const QString &address, const QString &mailbox)
{
    open(address, mailbox,
         tr("Your mail program should show a mail now. If it does not, write to this address:"),
         tr("No mail program could be opened. Write to this address:"));
}

void AddressNotice::open(const QString &address, const QString &shown, const QString &whenOpened,
                         const QString &whenNot)
{
    const bool opened = DesktopOpener::open(QUrl(address));
    ui->labelNotOpened->setText(opened ? whenOpened : whenNot);
    ui->labelAddress->setText(shown);
    ui->buttonCopy->setText(tr("Copy"));
    show();
}

void AddressNotice::on_buttonCopy_clicked()
{
    QGuiApplication::clipboard()->setText(ui->labelAddress->text());
    ui->buttonCopy->setText(tr("Copied"));
}

} // namespace velometer
