#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class PageHeader;
}

/// The header row of every page: `orvakLink`, `labelTitle`, `buttonRunning` while a test runs,
/// `versionLabel`, `buttonClose`. In the given look every page carries the program's name and all
/// of them; in the others the page's own title, and windows are closed as the desktop does it.
class PageHeader : public QWidget
{
    Q_OBJECT

public:
    explicit PageHeader(QWidget *parent);
    ~PageHeader() override;

    /// @p title is the page's own.
    void fill(const QString &title);
    /// What runs now, as a button that leads to the test page; empty: nothing.
    void setRunning(const QString &text);
    void retranslate();

private:
    std::unique_ptr<Ui::PageHeader> ui;
};

} // namespace velometer
