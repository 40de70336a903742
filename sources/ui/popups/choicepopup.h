#pragma once

#include "ui/frame/choice.h"
#include "ui/popups/popupbase.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace velometer {

/// Asks for one of several things: a row each, of which the current one is marked, and a way out.
/// The keyboard begins on the current one; Up and Down move.
class ChoicePopup : public PopupBase
{
    Q_OBJECT

public:
    explicit ChoicePopup(QWidget *parent);

    /// Shows the first hundred options.
    void setChoice(const Choice &choice);

Q_SIGNALS:
    /// @p index counts the options.
    void chosen(int index);

protected:
    void retranslate() override;
    QWidget *focusedFirst() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *title;
    QScrollArea *area;
    QVBoxLayout *rows;
    QPushButton *cancel;
    QPushButton *currentRow = nullptr;
};

} // namespace velometer
