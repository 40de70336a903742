#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class WarningPopup;
}

/// A warning with two answers. The keyboard begins on the refusal, so that a key pressed too early
/// agrees to nothing.
class WarningPopup : public PopupBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent, owns the popup and takes its answers.
    explicit WarningPopup(MainWindow *mainWindow);
    ~WarningPopup() override;

    /// Plain text. This and the other texts may change while the popup is shown; who changes them
    /// then fits its size.
    void setTitel(const QString &title);
    /// Rich text; what comes from outside is escaped by the caller.
    void setMessage(const QString &message);
    /// Until the language changes, which brings back the form's own text.
    void setOKButtonText(const QString &text);
    void setCancelButtonText(const QString &text);

protected:
    void retranslate() override;
    QWidget *focusedFirst() override;

private Q_SLOTS:
    void on_buttonOk_clicked();
    void on_buttonCancel_clicked();

private:
    std::unique_ptr<Ui::WarningPopup> ui;
};

} // namespace velometer
