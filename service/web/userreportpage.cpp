#include "web/userreportpage.h"

#include "utils/utils.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

struct Texts
{
    QString code;
    QString title;
    QString one;
    QString count;
    QString newestOnly;
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
        u"Only the newest %1 measurements are shown."_s,
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
        u"Nur die neuesten %1 Messungen werden gezeigt."_s,
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

QString rateText(const std::optional<qint64> &bitsPerSecond, const QLocale &locale)
{
    if (!bitsPerSecond) {
        return dash;
    }
    const auto rate = static_cast<double>(*bitsPerSecond);
    if (rate >= 1e9) {
        return locale.toString(rate / 1e9, 'f', 2) + u" Gbit/s"_s;
    }
    return rate >= 1e6 ? locale.toString(rate / 1e6, 'f', 2) + u" Mbit/s"_s
                       : locale.toString(rate / 1e3, 'f', 1) + u" kbit/s"_s;
}

QString rttText(const std::optional<qint64> &nanoseconds, const QLocale &locale)
{
    return nanoseconds ? locale.toString(static_cast<double>(*nanoseconds) / 1e6, 'f', 1) + u" ms"_s
                       : dash;
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
    return (number ? u"<td class=\"n\">"_s : u"<td>"_s) + text.toHtmlEscaped() + u"</td>"_s;
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
           "base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n"
           "Cache-Control: no-store\r\nReferrer-Policy: no-referrer\r\n";
}

QByteArray UserReportPage::measurements(const ReportStore::UserReports &reports, Language language)
{
    const Texts &texts = textsOf(language);
    const QLocale locale(language == Language::German ? QLocale::German : QLocale::English);
    if (reports.reports.isEmpty()) {
        return page(texts, texts.title, u"<p>"_s + texts.none.toHtmlEscaped() + u"</p>\n"_s)
            .toUtf8();
    }
    const auto shown = reports.reports.size();
    const QString summary = shown == 1     ? texts.one
                            : reports.more ? texts.newestOnly.arg(shown)
                                           : texts.count.arg(shown);
    QString body =
        u"<p>"_s + summary.toHtmlEscaped() + u"</p>\n<div class=\"wide\"><table>\n<thead><tr>"_s;
    for (qsizetype i = 0; i < texts.columns.size(); ++i) {
        // Download, upload and RTT stand to the right, as their figures do.
        body += (i >= 3 && i <= 5 ? u"<th class=\"n\">"_s : u"<th>"_s) +
                texts.columns.at(i).toHtmlEscaped() + u"</th>"_s;
    }
    body += u"</tr></thead>\n<tbody>\n"_s;
    for (const Report &report : reports.reports) {
        const auto time = QDateTime::fromMSecsSinceEpoch(report.clientTime, QTimeZone::utc());
        body += u"<tr>"_s + cell(time.isValid() ? time.toString(u"yyyy-MM-dd HH:mm:ss"_s) : dash) +
                cell(u"%1 / %2"_s.arg(report.seriesId).arg(report.testId)) +
                cell(report.testServer) + cell(rateText(report.download.avg, locale), true) +
                cell(rateText(report.bestUpload().avg, locale), true) +
                cell(rttText(report.rttAvg, locale), true) +
                cell(connectionText(report.connectionType)) + cell(placeText(report, locale)) +
                u"</tr>\n"_s;
    }
    body += u"</tbody>\n</table></div>\n"_s;
    return page(texts, texts.title, body).toUtf8();
}

QByteArray UserReportPage::unknownUser(Language language)
{
    const Texts &texts = textsOf(language);
    return page(texts, texts.unknownTitle, u"<p>"_s + texts.unknown.toHtmlEscaped() + u"</p>\n"_s)
        .toUtf8();
}

} // namespace velometer
