#include "ui/frame/addressnotice.h"

#include "ui_addressnotice.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

namespace velometer {

// The catalogues have both sentences under the links page.

AddressNotice::AddressNotice(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::AddressNotice>())
{
    ui->setupUi(this);
    hide();
}

AddressNotice::~AddressNotice() = default;

void AddressNotice::openPage(const QString &address)
{
    open(address, address,
         QCoreApplication::translate(
             "velometer::LinksTab",
             "No browser could be opened. Copy this address into the browser of another device:"));
}

void AddressNotice::openMail(const QString &address, const QString &mailbox)
{
    open(address, mailbox,
         QCoreApplication::translate("velometer::LinksTab",
                                     "No mail program could be opened. Write to this address:"));
}

void AddressNotice::open(const QString &address, const QString &shown, const QString &whenNot)
{
    hide();
    if (QDesktopServices::openUrl(QUrl(address))) {
        return;
    }
    ui->labelNotOpened->setText(whenNot);
    ui->labelAddress->setText(shown);
    show();
}

} // namespace velometer
