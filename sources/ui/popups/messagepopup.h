#pragma once

#include "ui/popups/popupbase.h"

#include <QString>

#include <memory>

namespace velometer {

namespace Ui {
class MessagePopup;
}

/// What a MessagePopup says, in the user's language. A button without a text is not there; without
/// any button the popup asks for patience, and its owner closes it.
struct Message
{
    QString title;  ///< plain text
    QString text;   ///< rich text; what comes from outside is escaped by the caller
    QString accept; ///< of the button that agrees
    QString cancel; ///< of the one that refuses
};

/// An error, a notice, a warning with two answers, or a wait. Where there is a refusal the keyboard
/// begins on it, so that a key pressed too early agrees to nothing.
class MessagePopup : public PopupBase
{
    Q_OBJECT

public:
    explicit MessagePopup(QWidget *parent);
    ~MessagePopup() override;

    /// May change while the popup is shown; who changes it then fits its size.
    void setMessage(const Message &message);

Q_SIGNALS:
    void accepted();

protected:
    void retranslate() override;
    QWidget *focusedFirst() override;

private Q_SLOTS:
    void on_buttonOk_clicked();
    void on_buttonCancel_clicked();

private:
    std::unique_ptr<Ui::MessagePopup> ui;
};

} // namespace velometer
