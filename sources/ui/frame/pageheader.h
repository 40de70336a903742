#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class PageHeader;
}

/// The header row of every page: `orvakLink`, `labelTitle`, `versionLabel`, `buttonClose`.
class PageHeader : public QWidget
{
    Q_OBJECT

public:
    explicit PageHeader(QWidget *parent);
    ~PageHeader() override;

    /// Shows the program's title and version.
    void fill();
    void retranslate();

private:
    std::unique_ptr<Ui::PageHeader> ui;
};

} // namespace velometer
