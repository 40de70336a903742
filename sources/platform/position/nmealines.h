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
    bool tellsPosition = false; ///< of a receiver that has a fix
    bool tellsSatellites = false;
    std::optional<int> timeOfDay; ///< ms after midnight UTC
};

/// Takes bytes as they come from a receiver, a recording or a network and lets nothing through but
/// whole sentences that tell positions or satellites: printable, with the right checksum, and with
/// such numbers of satellites that they can be added up. The rest vanishes, other protocols and
/// lines of more than 1023 bytes included. Keeps at most one unfinished line.
class NmeaLines
{
public:
    /// The sentences that @p bytes complete, in order.
    QList<NmeaSentence> take(QByteArrayView bytes);
    /// The next byte begins a line: the source is another one.
    void clear();

private:
    std::optional<NmeaSentence> check(const QByteArray &text);
    bool continuesSatellites(const QByteArray &talker, const QList<QByteArray> &fields);

    QByteArray unfinished;
    bool tooLong = false; ///< the rest of this line is dropped
    // The list of satellites in view that is under way.
    QByteArray listTalker;
    int listSentence = 0; ///< the last one of it; 0: none is under way
};

} // namespace velometer
