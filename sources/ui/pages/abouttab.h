#pragma once

#include "ui/frame/tabbase.h"

#include <memory>

class QUrl;

namespace velometer {

namespace Ui {
class AboutTab;
}

/// The about page: a compiled-in text in the user's language. Its links open in the desktop's
/// browser.
class AboutTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit AboutTab(QWidget *parent);
    ~AboutTab() override;

    /// Shows the text from its start.
    void showDefaultPage();

protected:
    void retranslate() override;
    void dress() override;

private:
    void openLink(const QUrl &link);

    std::unique_ptr<Ui::AboutTab> ui;
};

} // namespace velometer
