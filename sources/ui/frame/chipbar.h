#pragma once

#include <QPoint>
#include <QScrollArea>

#include <optional>

class QHBoxLayout;
class QPushButton;

namespace velometer {

/// A row of chips: buttons that say what is filtered, and that slide sideways under the finger
/// where they do not fit. The keyboard brings the one with the focus into view; Left and Right move
/// between them. Main thread only.
class ChipBar : public QScrollArea
{
    Q_OBJECT

public:
    /// Behind the text of a chip that opens a choice; a screen reader leaves it out.
    static inline const QString choiceMark = QStringLiteral(" ▾");

    explicit ChipBar(QWidget *parent = nullptr);

    /// A chip of that object name at the end of the row, owned by it.
    QPushButton *addChip(const QString &name);
    /// @p set: something is filtered by it, so it looks chosen and says so to a screen reader.
    static void setChip(QPushButton *chip, const QString &text, bool set);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QHBoxLayout *row;
    std::optional<int> pressedAt; ///< px, in the bar's coordinates
    int scrolledAtPress = 0;
    bool dragging = false;
};

} // namespace velometer
