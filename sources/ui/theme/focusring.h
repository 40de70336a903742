#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace velometer {

/// Marks where the keyboard is, for who uses the keyboard: after a key the widget with the focus
/// has the property "keys", which the style sheet draws a ring for; after a touch or a click
/// nothing has. One for the application; main thread only.
class FocusRing : public QObject
{
    Q_OBJECT

public:
    explicit FocusRing(QObject *parent);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void mark(QWidget *widget);

    bool byKeys = false;
    QPointer<QWidget> focused;
    QPointer<QWidget> marked;
};

} // namespace velometer
