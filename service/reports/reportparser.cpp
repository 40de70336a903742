#include "reports/reportparser.h"

#include "figures/delays.h"
#include "figures/loadfigures.h"
#include "reports/reporttest.h"

#include <QCryptographicHash>
#include <QHash>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <vector>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Reports are five levels deep; more is an attack on whoever reads them later.
constexpr std::size_t maxDepth = 16;

/// A report of a long measurement has fewer than half as many.
constexpr int maxElements = 40'000;

/// More than a stream of a minute has.
constexpr qint64 maxBytes = 1'000'000'000'000;

/// Longest text kept in a column; the document keeps all of it.
constexpr qsizetype maxColumn = 256;

std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

/// Clients encode the text twice when they send it; without other letters than ASCII's it shows no
/// difference.
std::optional<QString> decode(const QByteArray &received)
{
    auto once = decodeUtf8(received);
    if (!once) {
        return std::nullopt;
    }
    const bool latin1 = std::ranges::all_of(*once, [](QChar c) { return c.unicode() <= 0xff; });
    const bool ascii = std::ranges::all_of(*once, [](QChar c) { return c.unicode() < 0x80; });
    if (latin1 && !ascii) {
        if (auto twice = decodeUtf8(once->toLatin1())) {
            return twice;
        }
    }
    return once;
}

/// Whether every tag is of a sane length and has few attributes. XML readers compare each of a
/// tag's with all others: thousands of tags with hundreds each would keep them busy for seconds. A
/// document type that declares something holds tags of its own and is refused as well.
bool hasPlainTags(QStringView document)
{
    constexpr qsizetype maxTag = 1024;
    // A report's tags have one attribute, its document type one address.
    constexpr int maxQuotes = 8;
    for (qsizetype at = document.indexOf(u'<'); at >= 0; at = document.indexOf(u'<', at)) {
        const auto rest = document.sliced(at);
        const auto skip = [&](QStringView opening, QStringView closing) {
            if (!rest.startsWith(opening)) {
                return false;
            }
            const auto end = rest.indexOf(closing, opening.size());
            at += end < 0 ? rest.size() : end + closing.size();
            return true;
        };
        if (skip(u"<![CDATA[", u"]]>") || skip(u"<!--", u"-->")) {
            continue;
        }
        QChar quote;
        int quotes = 0;
        qsizetype length = 1;
        for (; length < rest.size() && (rest.at(length) != u'>' || !quote.isNull()); ++length) {
            const QChar c = rest.at(length);
            if (length > maxTag || c == u'<') {
                return false;
            }
            if (c == quote) {
                quote = QChar();
                if (++quotes > maxQuotes) {
                    return false;
                }
            } else if (quote.isNull() && (c == u'"' || c == u'\'')) {
                quote = c;
            }
        }
        at += length;
    }
    return true;
}

/// The elements the service looks at, by their path below the root; texts of all others pass.
enum class Need { Number, Text, Optional };
const QHash<QString, Need> &knownElements()
{
    static const QHash<QString, Need> elements{
        {u"UserData/UserID"_s, Need::Number},
        {u"UserData/ConnectionType"_s, Need::Text},
        {u"UserInstallation/AppletVersion"_s, Need::Optional},
        {u"UserInstallation/OS"_s, Need::Optional},
        {u"TestResult/TestID"_s, Need::Number},
        {u"TestResult/SeriesID"_s, Need::Number},
        {u"TestResult/TestServer"_s, Need::Text},
        {u"TestResult/ClientTime"_s, Need::Number},
        {u"TestResult/Download/Bytes"_s, Need::Optional},
        {u"TestResult/Download/BytesTotal"_s, Need::Optional},
        {u"TestResult/Download/Valid"_s, Need::Number},
        {u"TestResult/Download/Min"_s, Need::Number},
        {u"TestResult/Download/Avg"_s, Need::Number},
        {u"TestResult/Download/Max"_s, Need::Number},
        {u"TestResult/Download/StartLocation"_s, Need::Optional},
        {u"TestResult/Download/EndLocation"_s, Need::Optional},
        {u"TestResult/Upload/Bytes"_s, Need::Optional},
        {u"TestResult/Upload/BytesTotal"_s, Need::Optional},
        {u"TestResult/Upload/Valid"_s, Need::Number},
        {u"TestResult/Upload/Min"_s, Need::Number},
        {u"TestResult/Upload/Avg"_s, Need::Number},
        {u"TestResult/Upload/Max"_s, Need::Number},
        {u"TestResult/Upload/ClientMin"_s, Need::Number},
        {u"TestResult/Upload/ClientAvg"_s, Need::Number},
        {u"TestResult/Upload/ClientMax"_s, Need::Number},
        {u"TestResult/Upload/StartLocation"_s, Need::Optional},
        {u"TestResult/Upload/EndLocation"_s, Need::Optional},
        {u"TestResult/ResponseTime/Valid"_s, Need::Number},
        {u"TestResult/ResponseTime/Min"_s, Need::Number},
        {u"TestResult/ResponseTime/Avg"_s, Need::Number},
        {u"TestResult/ResponseTime/Max"_s, Need::Number},
        {u"TestResult/ResponseTime/StartLocation"_s, Need::Optional},
        {u"TestResult/ResponseTime/EndLocation"_s, Need::Optional},
        {u"Mobile/Platform"_s, Need::Optional},
        {u"Mobile/Model"_s, Need::Optional},
        {u"Mobile/Manufacturer"_s, Need::Optional},
        {u"Mobile/Location"_s, Need::Optional},
        {u"Mobile/Network"_s, Need::Optional},
        {u"Mobile/MNC"_s, Need::Optional},
        {u"Mobile/MCC"_s, Need::Optional},
        {u"Mobile/LocationPath"_s, Need::Optional},
        {u"JavaConsoleOutput"_s, Need::Optional},
    };
    return elements;
}

/// The known elements and those around them, by name.
struct Node
{
    std::map<QString, Node, std::less<>> children;
    QString path;
    std::optional<Need> need; ///< of a known element
};

const Node &knownTree()
{
    static const Node tree = [] {
        Node root;
        for (auto element = knownElements().cbegin(); element != knownElements().cend();
             ++element) {
            Node *node = &root;
            for (const auto &name : element.key().split(u'/')) {
                node = &node->children[name];
            }
            node->path = element.key();
            node->need = *element;
        }
        return root;
    }();
    return tree;
}

/// Plain decimals only: QString::toLongLong would also take blanks and a plus sign.
std::optional<qint64> decimal(const QString &text)
{
    static const QRegularExpression digits(u"\\A-?[0-9]{1,19}\\z"_s);
    bool fits = false;
    const qint64 value = text.toLongLong(&fits, 10);
    return fits && digits.match(text).hasMatch() ? std::optional(value) : std::nullopt;
}

/// Walks one document and keeps the texts of the known elements.
class Walk
{
public:
    Walk(const QString &document, const std::atomic<bool> &stopFlag)
        : stop(stopFlag)
        , reader(document)
    {}

    bool run();
    QString text(const QString &path) const { return texts.value(path); }
    /// The number at @p path, which run() has found to be one.
    qint64 number(const QString &path) const { return decimal(texts.value(path)).value_or(0); }
    QString hash() const { return hashAttribute; }

private:
    bool enter();
    bool leave();
    bool complete() const;

    const std::atomic<bool> &stop;
    QXmlStreamReader reader;
    std::vector<const Node *> open; ///< from the root on; null beyond the known tree
    QString current;                ///< of the known element that is open
    int elements = 0;
    QHash<QString, QString> texts;
    QString hashAttribute;
};

bool Walk::run()
{
    while (!reader.atEnd()) {
        if (stop) {
            return false;
        }
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!enter()) {
                return false;
            }
            break;
        case QXmlStreamReader::EndElement:
            if (!leave()) {
                return false;
            }
            break;
        case QXmlStreamReader::Characters: current += reader.text(); break;
        case QXmlStreamReader::EntityReference: return false;
        default: break;
        }
    }
    return !reader.hasError() && complete();
}

bool Walk::enter()
{
    current.clear();
    if (open.empty()) {
        open.push_back(&knownTree());
        hashAttribute = reader.attributes().value(u"Hash"_s).toString();
        return reader.name() == u"PerformanceIPhone"_s;
    }
    const Node *parent = open.back();
    if (parent && parent->need) {
        // A known element holds text, no elements.
        return false;
    }
    const Node *node = nullptr;
    if (parent) {
        const auto child = parent->children.find(reader.name());
        node = child == parent->children.end() ? nullptr : &child->second;
    }
    open.push_back(node);
    return open.size() <= maxDepth && ++elements <= maxElements;
}

bool Walk::leave()
{
    const Node *node = open.back();
    open.pop_back();
    if (node && node->need) {
        if (texts.contains(node->path) || (*node->need == Need::Number && !decimal(current))) {
            return false;
        }
        texts.insert(node->path, current);
    }
    current.clear();
    return true;
}

bool Walk::complete() const
{
    for (auto element = knownElements().cbegin(); element != knownElements().cend(); ++element) {
        if (*element != Need::Optional && !texts.contains(element.key())) {
            return false;
        }
    }
    return true;
}

QString expectedHash(const Walk &walk, const QString &salt)
{
    const QStringList parts{salt,
                            walk.text(u"UserData/UserID"_s),
                            walk.text(u"TestResult/TestServer"_s),
                            walk.text(u"TestResult/TestID"_s),
                            walk.text(u"TestResult/SeriesID"_s),
                            walk.text(u"TestResult/Download/Avg"_s),
                            walk.text(u"TestResult/Upload/Avg"_s),
                            QString::number(walk.number(u"TestResult/ResponseTime/Avg"_s) / 1000),
                            walk.text(u"TestResult/ClientTime"_s),
                            salt};
    const QByteArray digest =
        QCryptographicHash::hash(parts.join(u'|').toUtf8(), QCryptographicHash::Md5);
    return QString::fromLatin1(digest.toBase64());
}

/// What a phase that was skipped or failed reports is no figure: 0 or -1.
std::optional<qint64> figure(const Walk &walk, const QString &path)
{
    const qint64 value = walk.number(path);
    return value > 0 ? std::optional(value) : std::nullopt;
}

Report::Rate rate(const Walk &walk, const QString &prefix)
{
    return {.min = figure(walk, prefix + u"Min"_s),
            .avg = figure(walk, prefix + u"Avg"_s),
            .max = figure(walk, prefix + u"Max"_s)};
}

/// Intervals of a list "120,0,35", up to the last one with bytes.
int intervals(const QString &list)
{
    int last = 0;
    int count = 0;
    for (const auto &bytes : QStringView(list).tokenize(u',')) {
        ++count;
        last = bytes.toLongLong() > 0 ? count : last;
    }
    return last;
}

/// The horizontal accuracy in m of the sample nearest to @p ms in "time latitude longitude altitude
/// accuracy accuracy lock,...", whose times are seconds.
std::optional<double> accuracyAt(const QString &path, qint64 ms)
{
    constexpr qsizetype accuracyPlace = 4;
    std::optional<double> accuracy;
    qint64 nearest = std::numeric_limits<qint64>::max();
    for (const auto sample : QStringView(path).tokenize(u',', Qt::SkipEmptyParts)) {
        const auto parts = sample.split(u' ');
        bool isNumber = false;
        const double value = parts.value(accuracyPlace).toDouble(&isNumber);
        const qint64 distance = qAbs(parts.value(0).toLongLong() - ms / 1000);
        if (isNumber && value > 0 && std::isfinite(value) && distance < nearest) {
            nearest = distance;
            accuracy = value;
        }
    }
    return accuracy;
}

/// "time latitude longitude altitude" of the first phase that knew its place.
void takePosition(const Walk &walk, Report &report)
{
    for (const auto &phase : {u"Download"_s, u"Upload"_s, u"ResponseTime"_s}) {
        for (const auto &end : {u"StartLocation"_s, u"EndLocation"_s}) {
            const QStringList parts =
                walk.text(u"TestResult/%1/%2"_s.arg(phase, end)).split(u' ', Qt::SkipEmptyParts);
            bool latitudeOk = false;
            bool longitudeOk = false;
            const double latitude = parts.value(1).toDouble(&latitudeOk);
            const double longitude = parts.value(2).toDouble(&longitudeOk);
            // A client that does not know its place writes zeros.
            const bool known = latitude != 0 || longitude != 0;
            if (latitudeOk && longitudeOk && known && std::abs(latitude) <= 90 &&
                std::abs(longitude) <= 180) {
                report.latitude = latitude;
                report.longitude = longitude;
                report.accuracy =
                    accuracyAt(walk.text(u"Mobile/LocationPath"_s), parts.value(0).toLongLong());
                return;
            }
        }
    }
}

/// The delays beside the loads that BBR made, of the log's line. Other controls fill the queues
/// differently: figures of several say nothing of the line.
void takeDelays(const Walk &walk, Report &report)
{
    FinishedTest test;
    if (!LoadFigures::read(ReportTest::unescapedLog(walk.text(u"JavaConsoleOutput"_s)), test)) {
        return;
    }
    const auto median = [](const LoadDelays &load) {
        return load.congestion == u"bbr"_s ? DelayFigures::median(load.samples) : std::nullopt;
    };
    report.downloadRtt = median(test.downloadLoad);
    report.uploadRtt = median(test.uploadLoad);
}

Report figuresOf(const Walk &walk)
{
    Report report;
    report.userId = walk.number(u"UserData/UserID"_s);
    const auto column = [&walk](const QString &path) { return walk.text(path).left(maxColumn); };
    report.seriesId = walk.number(u"TestResult/SeriesID"_s);
    report.testId = walk.number(u"TestResult/TestID"_s);
    report.clientTime = walk.number(u"TestResult/ClientTime"_s);
    report.testServer = column(u"TestResult/TestServer"_s);
    report.connectionType = column(u"UserData/ConnectionType"_s);
    report.location = column(u"Mobile/Location"_s);
    report.networkName = column(u"Mobile/Network"_s);
    report.mcc = column(u"Mobile/MCC"_s);
    report.mnc = column(u"Mobile/MNC"_s);
    report.platform = column(u"Mobile/Platform"_s);
    report.model = column(u"Mobile/Model"_s);
    report.manufacturer = column(u"Mobile/Manufacturer"_s);
    report.appletVersion = column(u"UserInstallation/AppletVersion"_s);
    report.download = rate(walk, u"TestResult/Download/"_s);
    report.upload = rate(walk, u"TestResult/Upload/"_s);
    report.uploadClient = rate(walk, u"TestResult/Upload/Client"_s);
    report.downloadIntervals = intervals(walk.text(u"TestResult/Download/Bytes"_s));
    report.uploadIntervals = intervals(walk.text(u"TestResult/Upload/Bytes"_s));
    report.rttMin = figure(walk, u"TestResult/ResponseTime/Min"_s);
    report.rttAvg = figure(walk, u"TestResult/ResponseTime/Avg"_s);
    report.rttMax = figure(walk, u"TestResult/ResponseTime/Max"_s);
    for (const auto &stream : {u"Download"_s, u"Upload"_s}) {
        const auto bytes = decimal(walk.text(u"TestResult/%1/BytesTotal"_s.arg(stream)));
        report.bytes += std::clamp(bytes.value_or(0), qint64{0}, maxBytes);
    }
    takePosition(walk, report);
    takeDelays(walk, report);
    return report;
}

} // namespace

std::variant<Report, ReportParser::Problem> ReportParser::parse(const QByteArray &received,
                                                                const QStringList &salts,
                                                                const std::atomic<bool> &stop)
{
    if (stop) {
        return Problem::Stopped;
    }
    auto document = decode(received);
    if (!document) {
        return Problem::Damaged;
    }
    Walk walk(*document, stop);
    if (!hasPlainTags(*document) || !walk.run()) {
        return stop ? Problem::Stopped : Problem::Damaged;
    }
    if (walk.number(u"UserData/UserID"_s) <= 0) {
        return Problem::Damaged;
    }
    if (std::ranges::none_of(
            salts, [&](const QString &salt) { return walk.hash() == expectedHash(walk, salt); })) {
        return Problem::WrongHash;
    }
    Report report = figuresOf(walk);
    report.document = *std::move(document);
    return report;
}

std::optional<Report> ReportParser::read(const QString &document)
{
    const std::atomic<bool> never{false};
    Walk walk(document, never);
    return walk.run() ? std::optional(figuresOf(walk)) : std::nullopt;
}

} // namespace velometer
