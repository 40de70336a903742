#include "web/userreportpage.h"

#include "utils/utils.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

struct Texts
{
    QString code;
    QString title;
    QString one;
    QString count;
    QString older;
    QString unverified;
    QString late;
    QString none;
    QString unknownTitle;
    QString unknown;
    QStringList columns;
};

const Texts &textsOf(UserReportPage::Language language)
{
    static const Texts english{
        u"en"_s,
        u"Your measurements"_s,
        u"One measurement. Times are UTC."_s,
        u"%1 measurements, the newest first. Times are UTC."_s,
        u"Older measurements"_s,
        u"not verified"_s,
        u"* The service was too busy to keep up; the link may be faster."_s,
        u"There are no measurements yet. Start one on your device; it appears here at once."_s,
        u"Nothing here"_s,
        u"We know no measurements under this address. Please open the page from your device, "
        "which knows the right one."_s,
        {u"Time"_s, u"Series / test"_s, u"Server"_s, u"Download"_s, u"Upload"_s, u"RTT"_s,
         u"Connection"_s, u"Location"_s}};
    static const Texts german{
        u"de"_s,
        u"Ihre Messungen"_s,
        u"Eine Messung. Zeiten in UTC."_s,
        u"%1 Messungen, die neueste zuerst. Zeiten in UTC."_s,
        u"Ältere Messungen"_s,
        u"nicht bestätigt"_s,
        u"* Der Dienst war überlastet; die Verbindung ist vielleicht schneller."_s,
        u"Noch keine Messungen. Starten Sie eine auf Ihrem Gerät; sie erscheint sofort hier."_s,
        u"Hier ist nichts"_s,
        u"Unter dieser Adresse kennen wir keine Messungen. Bitte öffnen Sie die Seite von Ihrem "
        "Gerät aus; es kennt die richtige Adresse."_s,
        {u"Zeit"_s, u"Serie / Test"_s, u"Server"_s, u"Download"_s, u"Upload"_s, u"RTT"_s,
         u"Verbindung"_s, u"Ort"_s}};
    return language == UserReportPage::Language::German ? german : english;
}

/// Where there is nothing to show.
const QString dash = u"–"_s;

/// Beyond what any network gives, a figure is a mistake or a joke.
constexpr qint64 maxRate = 1'000'000'000'000;      // bit/s
constexpr qint64 maxResponse = 60'000'000'000;     // ns
constexpr qint64 firstTime = 946'684'800'000;      // ms: 2000-01-01
constexpr qint64 lastTime = 4'133'980'800'000 - 1; // ms: before 2101-01-01

QString rateText(const Report &report, const std::optional<qint64> &bitsPerSecond,
                 const Texts &texts, const QLocale &locale)
{
    if (!bitsPerSecond || *bitsPerSecond > maxRate) {
        return dash;
    }
    if (!report.verified) {
        return texts.unverified;
    }
    const auto rate = static_cast<double>(*bitsPerSecond);
    const QString text = rate >= 1e9   ? locale.toString(rate / 1e9, 'f', 2) + u" Gbit/s"_s
                         : rate >= 1e6 ? locale.toString(rate / 1e6, 'f', 2) + u" Mbit/s"_s
                                       : locale.toString(rate / 1e3, 'f', 1) + u" kbit/s"_s;
    return report.serviceLate ? text + u" *"_s : text;
}

QString rttText(const std::optional<qint64> &nanoseconds, const QLocale &locale)
{
    return nanoseconds && *nanoseconds <= maxResponse
               ? locale.toString(static_cast<double>(*nanoseconds) / 1e6, 'f', 1) + u" ms"_s
               : dash;
}

QString timeText(qint64 ms)
{
    return ms < firstTime || ms > lastTime ? dash
                                           : QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc())
                                                 .toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

/// Text from a client without what would rule the text around it: control characters, and those
/// that turn the direction of writing.
QString printable(const QString &text)
{
    QString kept;
    std::ranges::copy_if(text, std::back_inserter(kept), [](QChar c) {
        return c.category() != QChar::Other_Control && c.category() != QChar::Other_Format;
    });
    return kept;
}

/// A mode code by its name; what is no code (several modes) as it came.
QString connectionText(const QString &type)
{
    const QString name = Utils::connectionTypeKey(type);
    return name.isEmpty() ? type : name;
}

QString placeText(const Report &report, const QLocale &locale)
{
    QStringList parts;
    if (!report.location.isEmpty() && report.location != u"Unknown"_s) {
        parts += report.location;
    }
    if (report.latitude && report.longitude) {
        parts += locale.toString(*report.latitude, 'f', 4) + u"° / "_s +
                 locale.toString(*report.longitude, 'f', 4) + u"°"_s;
    }
    return parts.isEmpty() ? dash : parts.join(u", "_s);
}

QString page(const Texts &texts, const QString &title, const QString &body)
{
    return u"<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"robots\" content=\"noindex\">\n<title>%2 - Velometer</title>\n<style>\n"
           ":root{color-scheme:light dark}\n"
           "body{font:16px/1.5 system-ui,sans-serif;margin:2rem auto;max-width:75rem;padding:0 "
           "1rem}\n"
           "h1{font-size:1.6rem;margin:0 0 .5rem}\n"
           ".wide{overflow-x:auto}\n"
           "table{border-collapse:collapse;width:100%}\n"
           "th,td{padding:.4rem .7rem;text-align:left;border-bottom:1px solid "
           "#8885;white-space:nowrap}\n"
           "td.n,th.n{text-align:right;font-variant-numeric:tabular-nums}\n"
           "tbody tr:hover{background:#8882}\n"
           "</style>\n</head>\n<body>\n<h1>%2</h1>\n"_s.arg(texts.code, title) +
           body + u"</body>\n</html>\n"_s;
}

QString cell(const QString &text, bool number = false)
{
    return (number ? u"<td class=\"n\">"_s : u"<td>"_s) + printable(text).toHtmlEscaped() +
           u"</td>"_s;
}

} // namespace

UserReportPage::Language UserReportPage::choose(std::string_view parameter,
                                                std::string_view acceptLanguage)
{
    if (parameter == "de") {
        return Language::German;
    }
    if (parameter == "en") {
        return Language::English;
    }
    // The first language we have wins: browsers list them by preference.
    const auto german = acceptLanguage.find("de");
    const auto english = acceptLanguage.find("en");
    return german < english ? Language::German : Language::English;
}

std::string UserReportPage::headers()
{
    return "Content-Security-Policy: default-src 'none'; style-src 'unsafe-inline'; "
           "base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n";
}

QByteArray UserReportPage::measurements(const ReportStore::UserReports &reports, qint64 userId,
                                        Language language)
{
    const Texts &texts = textsOf(language);
    const QLocale locale(language == Language::German ? QLocale::German : QLocale::English);
    if (reports.count == 0) {
        return page(texts, texts.title, u"<p>"_s + texts.none.toHtmlEscaped() + u"</p>\n"_s)
            .toUtf8();
    }
    const QString summary = reports.count == 1 ? texts.one : texts.count.arg(reports.count);
    QString body =
        u"<p>"_s + summary.toHtmlEscaped() + u"</p>\n<div class=\"wide\"><table>\n<thead><tr>"_s;
    for (qsizetype i = 0; i < texts.columns.size(); ++i) {
        // Download, upload and RTT stand to the right, as their figures do.
        body += (i >= 3 && i <= 5 ? u"<th class=\"n\">"_s : u"<th>"_s) +
                texts.columns.at(i).toHtmlEscaped() + u"</th>"_s;
    }
    body += u"</tr></thead>\n<tbody>\n"_s;
    for (const Report &report : reports.reports) {
        body += u"<tr>"_s + cell(timeText(report.clientTime)) +
                cell(u"%1 / %2"_s.arg(report.seriesId).arg(report.testId)) +
                cell(report.testServer) +
                cell(rateText(report, report.download.avg, texts, locale), true) +
                cell(rateText(report, report.bestUpload().avg, texts, locale), true) +
                cell(rttText(report.rttAvg, locale), true) +
                cell(connectionText(report.connectionType)) + cell(placeText(report, locale)) +
                u"</tr>\n"_s;
    }
    body += u"</tbody>\n</table></div>\n"_s;
    if (std::ranges::any_of(reports.reports, &Report::serviceLate)) {
        body += u"<p>"_s + texts.late.toHtmlEscaped() + u"</p>\n"_s;
    }
    if (reports.older) {
        body += u"<p><a href=\"?page=UserReport&amp;userid=%1&amp;language=%2&amp;before=%3\">"
                "%4</a></p>\n"_s.arg(userId)
                    .arg(texts.code)
                    .arg(*reports.older)
                    .arg(texts.older.toHtmlEscaped());
    }
    return page(texts, texts.title, body).toUtf8();
}

QByteArray UserReportPage::unknownUser(Language language)
{
    const Texts &texts = textsOf(language);
    return page(texts, texts.unknownTitle, u"<p>"_s + texts.unknown.toHtmlEscaped() + u"</p>\n"_s)
        .toUtf8();
}

} // namespace velometer
