#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class WaitingPopup;
}

/// Tells that something takes a while. Has no answer: the main window closes it.
class WaitingPopup : public PopupBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the popup.
    explicit WaitingPopup(MainWindow *mainWindow);
    ~WaitingPopup() override;

    /// Plain text. Both texts may change while the popup is shown; who changes them
    /// then fits its size.
    void setTitel(const QString &title);
    /// Rich text; what comes from outside is escaped by the caller.
    void setMessage(const QString &message);

protected:
    void retranslate() override;

private:
    std::unique_ptr<Ui::WaitingPopup> ui;
};

} // namespace velometer
