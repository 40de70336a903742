#pragma once

#include <QObject>
#include <QString>

namespace velometer {

class MessagePopup;
class PopupLayer;

/// What the user is told of the store as a whole: that it cannot be opened, that one of another
/// version was set aside, and that it is being emptied and was. Main thread only.
class StoreDialogue : public QObject
{
    Q_OBJECT

public:
    /// @p layer is borrowed and outlives this; @p window is the parent.
    StoreDialogue(PopupLayer &layer, QWidget *window);

    void tellNotOpened();
    /// Says nothing when no file of another version was found.
    void tellSetAside();
    /// Asks, saying how much would go, and then deletes all tests and waiting reports, behind a
    /// popup that asks for patience. That ends in one emptied() and a notice.
    void askToEmpty();

Q_SIGNALS:
    /// False: everything is as it was.
    void emptied(bool done);
    /// @p text is rich text.
    void notice(const QString &title, const QString &text);

private:
    void empty();
    void work();

    PopupLayer &layer;
    MessagePopup *waitingPopup;
    MessagePopup *questionPopup;
};

} // namespace velometer
