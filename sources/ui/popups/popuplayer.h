#pragma once

#include <QObject>

class QWidget;

namespace velometer {

class PopupBase;

/// Puts popups over the page of a window, one at a time, centred, with the page darkened below.
/// Popups are borrowed and live as long as this. Main thread only.
class PopupLayer : public QObject
{
    Q_OBJECT

public:
    /// @p window is the popups' parent, and this one's.
    explicit PopupLayer(QWidget *window);

    bool isOpen() const { return open != nullptr; }
    /// Takes the place of one that is open.
    void show(PopupBase *popup);
    /// Does nothing when it is not the one that is open.
    void close(PopupBase *popup);
    /// Fits the open popup after the window's size, or its own text, has changed.
    void place();

Q_SIGNALS:
    /// The page has the keyboard again.
    void closed();

protected:
    /// A finger that rests on Enter answers one question, not all that follow.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *window;
    QWidget *shade;
    PopupBase *open = nullptr;
};

} // namespace velometer
