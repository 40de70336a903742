#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class AddressNotice;
}

/// Opens an address outside the program and shows what to copy where nothing comes up: a desktop
/// may say that it opens an address and do nothing. The text is selectable and without markup.
/// Hidden before: the page that holds it hides it again when it is shown anew or shows something
/// else. Main thread only.
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

protected:
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void on_buttonCopy_clicked();

private:
    void open(const QString &address, const QString &shown, const QString &whenOpened,
              const QString &whenNot);

    const std::unique_ptr<Ui::AddressNotice> ui;
};

} // namespace velometer
