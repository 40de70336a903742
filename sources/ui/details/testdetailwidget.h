#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class TestDetailWidget;
}

/// One row of the details window: a category's heading, or a title with its description and value.
/// Texts are shown as they are, without markup.
class TestDetailWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TestDetailWidget(QWidget *parent);
    ~TestDetailWidget() override;

    /// Makes it a heading.
    void setTitle(const QString &title);
    /// Makes it a data row.
    void setData(const QString &title, const QString &description, const QString &value);
    /// Whether nothing follows that a line would divide it from.
    void setLast(bool last);

private:
    void state(bool heading);

    const std::unique_ptr<Ui::TestDetailWidget> ui;
};

} // namespace velometer
