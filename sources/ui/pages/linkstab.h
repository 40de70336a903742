#pragma once

#include "ui/frame/tabbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class LinksTab;
}

/// The links page: the user's own report on the service's web site, and a mail to the maker. An
/// address that the desktop cannot open is shown on the page, to be copied. Before the service has
/// given the user an id there is no report to show: its button is disabled, and a line says why.
class LinksTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit LinksTab(QWidget *parent);
    ~LinksTab() override;

    /// In a browser; the page shows what to copy where none comes up.
    void openPage(const QString &address);

protected:
    void retranslate() override;
    void showEvent(QShowEvent *event) override;

private Q_SLOTS:
    void on_websiteButton_clicked();
    void on_feedbackButtun_clicked();

private:
    void reset();

    std::unique_ptr<Ui::LinksTab> ui;
};

} // namespace velometer
