#include "platform/position/nmealines.h"

#include <algorithm>

namespace velometer {

namespace {

/// What the standard allows is 82; Qt's readers take 1023 bytes at a time.
constexpr qsizetype maxLine = 1023;

/// Of satellites in view, four to a sentence: more than all systems together show.
constexpr int maxSentences = 64;
constexpr int maxSatelliteNumber = 999;

/// A sentence without a checksum may be the middle of one, with half a number in it.
bool hasRightChecksum(QByteArrayView text)
{
    const qsizetype star = text.size() - 3;
    if (star < 1 || text.at(star) != '*') {
        return false;
    }
    bool ok = false;
    const int told = text.last(2).toByteArray().toInt(&ok, 16);
    const auto body = text.sliced(1, star - 1);
    int sum = 0;
    for (const char each : body) {
        sum ^= static_cast<uchar>(each);
    }
    return ok && told == sum && !body.contains('*');
}

bool isPrintable(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char each) { return each >= ' ' && each <= '~'; });
}

/// A whole number from @p least to @p most in plain digits; nothing when it is none.
std::optional<int> number(const QByteArray &field, int least, int most)
{
    constexpr qsizetype maxDigits = 4;
    bool ok = false;
    const int value = field.size() <= maxDigits ? field.toInt(&ok) : 0;
    return ok && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

/// "hhmmss" with or without a fraction, in ms.
std::optional<int> timeOfDay(const QByteArray &field)
{
    constexpr qsizetype wholeSeconds = 6;
    const auto hour = number(field.left(2), 0, 23);
    const auto minute = number(field.mid(2, 2), 0, 59);
    const auto second = number(field.mid(4, 2), 0, 59);
    if (field.size() < wholeSeconds || !hour || !minute || !second) {
        return std::nullopt;
    }
    const QByteArray fraction = field.mid(wholeSeconds + 1, 3).leftJustified(3, '0');
    return ((*hour * 60 + *minute) * 60 + *second) * 1000 + number(fraction, 0, 999).value_or(0);
}

/// The numbers in every @p step th of the fields from @p first to before @p end; some are empty.
QList<int> satellites(const QList<QByteArray> &fields, qsizetype first, qsizetype end,
                      qsizetype step)
{
    QList<int> numbers;
    for (qsizetype index = first; index < std::min(end, fields.size()); index += step) {
        if (const auto satellite = number(fields.at(index), 1, maxSatelliteNumber)) {
            numbers.append(*satellite);
        }
    }
    return numbers;
}

} // namespace

void NmeaLines::clear()
{
    unfinished.clear();
    tooLong = false;
    listSentence = 0;
}

QList<NmeaSentence> NmeaLines::take(QByteArrayView bytes)
{
    QList<NmeaSentence> sentences;
    while (!bytes.isEmpty()) {
        const qsizetype end = bytes.indexOf('\n');
        const QByteArrayView part = end < 0 ? bytes : bytes.first(end);
        tooLong = tooLong || unfinished.size() + part.size() > maxLine;
        if (tooLong) {
            unfinished.clear();
        } else {
            unfinished.append(part);
        }
        if (end < 0) {
            break;
        }
        if (!tooLong) {
            if (auto sentence = check(unfinished.trimmed())) {
                sentences.append(*std::move(sentence));
            }
        }
        unfinished.clear();
        tooLong = false;
        bytes = bytes.sliced(end + 1);
    }
    return sentences;
}

std::optional<NmeaSentence> NmeaLines::check(const QByteArray &text)
{
    if (!text.startsWith('$') || !isPrintable(text) || !hasRightChecksum(text)) {
        return std::nullopt;
    }
    const QList<QByteArray> fields = text.sliced(1, text.size() - 4).split(',');
    // Two letters of the talker, three of the kind.
    constexpr qsizetype nameLength = 5;
    if (fields.first().size() != nameLength) {
        return std::nullopt;
    }
    const QByteArray talker = fields.first().first(2);
    const QByteArray kind = fields.first().last(3);
    const auto field = [&](qsizetype index) { return fields.value(index); };

    // Receivers without a fix repeat old places and send times out of the blue.
    NmeaSentence sentence;
    if (kind == "RMC") {
        sentence.tellsPosition = field(2) == "A";
        sentence.timeOfDay = timeOfDay(field(1));
    } else if (kind == "GGA") {
        sentence.tellsPosition = number(field(6), 1, 9).has_value();
        sentence.timeOfDay = timeOfDay(field(1));
    } else if (kind == "GLL") {
        sentence.tellsPosition = field(6) == "A";
        sentence.timeOfDay = timeOfDay(field(5));
    } else if (kind == "GSA") {
        sentence.tellsPosition = number(field(2), 2, 3).has_value();
        // Of receivers for several systems each has its sentence; later ones number the systems.
        sentence.system = talker + field(18);
        sentence.inUse = sentence.tellsPosition ? satellites(fields, 3, 15, 1) : QList<int>();
    } else if (kind == "GSV") {
        sentence.system = talker;
        sentence.inView = takeList(talker, fields);
        if (!sentence.inView) {
            return std::nullopt;
        }
    } else if (kind == "ZDA" || kind == "VTG") {
        // The time of the first is that of the date, not that of a fix.
        sentence.tellsPosition = true;
    } else {
        return std::nullopt;
    }
    sentence.line = text + "\r\n";
    return sentence;
}

std::optional<QList<int>> NmeaLines::takeList(const QByteArray &talker,
                                              const QList<QByteArray> &fields)
{
    const auto sentences = number(fields.value(1), 1, maxSentences);
    const auto sentence = number(fields.value(2), 1, sentences.value_or(0));
    const bool follows =
        sentence == 1 || (sentence == listSentence + 1 && talker == listTalker && listSentence > 0);
    if (!sentence || !follows) {
        listSentence = 0;
        return std::nullopt;
    }
    if (sentence == 1) {
        list.clear();
    }
    listTalker = talker;
    listSentence = *sentence;
    list.append(satellites(fields, 4, 20, 4));
    return sentence == sentences ? std::optional(list) : std::nullopt;
}

} // namespace velometer
