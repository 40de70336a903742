#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>

namespace velometer {

/// A sentence that has passed the check: "$...*hh" CR LF.
struct NmeaSentence
{
    QByteArray line;
    bool tellsPosition = false;   ///< of a receiver that has a fix
    std::optional<int> timeOfDay; ///< of the fix; ms after midnight UTC
    /// Whose the satellites are that follow; receivers tell of one system after the other.
    QByteArray system;
    std::optional<QList<int>> inUse;
    std::optional<QList<int>> inView; ///< the whole list, with the last sentence of it
};

/// Takes bytes as they come from a receiver, a recording or a network and lets nothing through but
/// whole sentences that tell positions or satellites: printable, with the right checksum, and of
/// lists of satellites those that follow each other. The rest vanishes, other protocols and lines
/// of more than 1023 bytes included. Keeps at most one unfinished line and one unfinished list.
class NmeaLines
{
public:
    /// The sentences that @p bytes complete, in order.
    QList<NmeaSentence> take(QByteArrayView bytes);
    /// The next byte begins a line: the source is another one.
    void clear();

private:
    std::optional<NmeaSentence> check(const QByteArray &text);
    std::optional<QList<int>> takeList(const QByteArray &talker, const QList<QByteArray> &fields);

    QByteArray unfinished;
    bool tooLong = false; ///< the rest of this line is dropped
    // The list of satellites in view that is under way.
    QByteArray listTalker;
    int listSentence = 0; ///< the last one of it; 0: none is under way
    QList<int> list;
};

} // namespace velometer
