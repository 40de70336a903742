#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class ErrorPopup;
}

/// An error or a notice, with one answer.
class ErrorPopup : public PopupBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent, owns the popup and takes its answer.
    explicit ErrorPopup(MainWindow *mainWindow);
    ~ErrorPopup() override;

    /// Plain text. This and the other texts may change while the popup is shown; who changes them
    /// then fits its size.
    void setTitel(const QString &title);
    /// Rich text; what comes from outside is escaped by the caller.
    void setMessage(const QString &message);
    /// Until the language changes, which brings back the form's own text.
    void setOKButtonText(const QString &text);

protected:
    void retranslate() override;

private Q_SLOTS:
    void on_buttonOk_clicked();

private:
    std::unique_ptr<Ui::ErrorPopup> ui;
};

} // namespace velometer
