#include "parsers.h"
#include "support/registeredtest.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <array>

namespace velometer {

namespace {

constexpr int inputs = 3'000;

/// What parsers stumble over.
constexpr std::array<QByteArrayView, 14> tokens{"\r\n",  "\n\n",     "\0\0",
                                                "\"",    "]]>",      "<![CDATA[",
                                                "&#0;",  "-1",       "9223372036854775808",
                                                "1e999", "\xff\xfe", "\xf0\x9f\x98\x80",
                                                "%00",   "{[,:;$*"};

/// Changes @p bytes in one to four places: the same for the same @p dice.
QByteArray mutated(QByteArray bytes, const QList<QByteArray> &seeds, QRandomGenerator &dice)
{
    const auto place = [&] { return qsizetype(dice.bounded(quint32(bytes.size() + 1))); };
    for (auto changes = 1 + dice.bounded(4); changes > 0; --changes) {
        const auto [from, to] = std::minmax({place(), place()});
        const auto token = tokens[dice.bounded(quint32(tokens.size()))];
        switch (dice.bounded(7)) {
        case 0: bytes.remove(from, std::min<qsizetype>(to - from, 40)); break;
        case 1:
            bytes.insert(from, bytes.sliced(from, std::min<qsizetype>(to - from, 4'000)));
            break;
        case 2: bytes.insert(from, token); break;
        case 3: bytes.replace(from, std::min(to - from, token.size()), token); break;
        case 4: bytes.truncate(to); break;
        case 5: bytes = bytes.first(from) + seeds.at(dice.bounded(seeds.size())).right(to); break;
        default:
            if (from < bytes.size()) {
                bytes[from] = char(bytes[from] ^ (1 << dice.bounded(8)));
            }
        }
    }
    return bytes;
}

} // namespace

/// Bytes from outside, good ones with a few changes, against every parser. The same entry points,
/// with a fuzzer that looks where they lead, are built by scripts/fuzz.
class MutationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noBytesBreakAParser_data()
    {
        const Rows<int> row("parser");
        for (int i = 0; i < int(fuzzedParsers().size()); ++i) {
            row(fuzzedParsers()[size_t(i)].name, i);
        }
    }

    void noBytesBreakAParser()
    {
        const auto [index] = currentRow<int>();
        const FuzzedParser &parser = fuzzedParsers()[size_t(index)];
        const QList<QByteArray> seeds = parser.seeds();
        QLoggingCategory::setFilterRules(u"default.debug=false"_s); // thousands of complaints
        QRandomGenerator dice(20'261'123);
        for (const QByteArray &seed : seeds) {
            QVERIFY2(parser.take(seed), seed.constData());
        }
        for (int i = 0; i < inputs; ++i) {
            const QByteArray input = mutated(seeds.at(i % seeds.size()), seeds, dice);
            failing = input;
            parser.take(input);
        }
        failing.clear();
    }

private:
    static inline QByteArray failing; ///< for a debugger
};

} // namespace velometer

VELOMETER_TEST(MutationsTest)
#include "mutations_test.moc"
