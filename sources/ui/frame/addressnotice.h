#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class AddressNotice;
}

/// Opens an address outside the program; when the desktop has nothing for it, shows a sentence that
/// says so and what to copy instead, as selectable text without markup. Hidden otherwise: the page
/// that holds it hides it again when it is shown anew or shows something else. Main thread only.
class AddressNotice : public QWidget
{
    Q_OBJECT

public:
    explicit AddressNotice(QWidget *parent = nullptr);
    ~AddressNotice() override;

    /// A web page, in the desktop's browser.
    void openPage(const QString &address);
    /// A mail, in the desktop's mail program. @p address is a complete mailto address; @p mailbox
    /// is what is shown in its place.
    void openMail(const QString &address, const QString &mailbox);

private:
    void open(const QString &address, const QString &shown, const QString &whenNot);

    const std::unique_ptr<Ui::AddressNotice> ui;
};

} // namespace velometer
