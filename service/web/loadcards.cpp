#include "web/loadcards.h"

#include "web/figures.h"
#include "web/texts.h"

#include <QJsonArray>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer::LoadCards {

namespace {

constexpr double nsPerMillisecond = 1e6;

std::optional<qint64> whole(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toInteger()) : std::nullopt;
}

/// "+310 ms"; never "-0".
QString added(std::optional<qint64> ns, int decimals, Language language)
{
    if (!ns) {
        return u"–"_s;
    }
    const double scale = std::pow(10, decimals);
    const double value = std::round(static_cast<double>(*ns) / nsPerMillisecond * scale) / scale;
    return (value < 0 ? u"−"_s : u"+"_s) + Figures::decimal(std::abs(value), decimals, language) +
           u" ms"_s;
}

void writeHead(Html &html, std::initializer_list<const Phrase *> titles)
{
    html << "<thead><tr>";
    bool isFirst = true;
    for (const Phrase *const title : titles) {
        if (isFirst) {
            html << "<th scope=\"col\">" << *title << "</th>";
        } else {
            html << "<th scope=\"col\" class=\"n\">" << *title << "</th>";
        }
        isFirst = false;
    }
    html << "</tr></thead><tbody>\n";
}

void writeSentences(Html &html, const QJsonObject &verdicts)
{
    struct Words
    {
        QLatin1StringView suffers;
        const Phrase *download, *upload;
    };
    constexpr std::array words{
        Words{.suffers = "games"_L1,
              .download = &Texts::gamesDownload,
              .upload = &Texts::gamesUpload},
        Words{.suffers = "calls_and_games"_L1,
              .download = &Texts::callsDownload,
              .upload = &Texts::callsUpload},
        Words{.suffers = "everything"_L1,
              .download = &Texts::failDownload,
              .upload = &Texts::failUpload},
    };
    int known = 0;
    bool suffers = false;
    for (const bool ofUpload : {false, true}) {
        const auto verdict = verdicts.value(ofUpload ? "upload"_L1 : "download"_L1).toObject();
        const QString what = verdict.value("suffers"_L1).toString();
        known += what.isEmpty() ? 0 : 1;
        for (const Words &each : words) {
            if (what == each.suffers) {
                suffers = true;
                html << "<p class=\"verdict\">▲ ";
                html.phrase(ofUpload ? *each.upload : *each.download,
                            {added(whole(verdict.value("added_ns"_L1)), 0, html.getLanguage())})
                    << "</p>\n";
            }
        }
    }
    if (!suffers && known == 2) {
        html << "<p class=\"verdict good\">✓ " << Texts::nothingSuffers << "</p>\n";
    }
}

void writeLoad(Html &html, const Phrase &title, const QJsonObject &load)
{
    const auto language = html.getLanguage();
    const auto lost = load.value("lost_percent"_L1);
    const auto control = load.value("congestion"_L1).toString();
    html << "<tr><th scope=\"row\">" << title << "</th>";
    for (const QString &text :
         {Figures::roundTrip(whole(load.value("median_ns"_L1)), language),
          Figures::roundTrip(whole(load.value("p95_ns"_L1)), language),
          added(whole(load.value("added_ns"_L1)), 1, language),
          lost.isDouble() ? QString::number(std::lround(lost.toDouble())) + u" %"_s : u"–"_s,
          control.isEmpty() ? u"–"_s : control}) {
        html << "<td class=\"n\">" << text << "</td>";
    }
    html << "</tr>\n";
}

bool isKnown(const QJsonObject &load)
{
    return load.value("median_ns"_L1).isDouble() || load.value("lost_percent"_L1).isDouble();
}

/// "the path 80 %, the buffer 20 %" of the moments of which it is known.
QString heldBackBy(const QJsonObject &kernel, Language language)
{
    struct Limit
    {
        QLatin1StringView name;
        const Phrase *phrase;
    };
    constexpr std::array limits{Limit{.name = "window"_L1, .phrase = &Texts::byWindow},
                                Limit{.name = "receiver"_L1, .phrase = &Texts::byReceiver},
                                Limit{.name = "buffer"_L1, .phrase = &Texts::byBuffer},
                                Limit{.name = "application"_L1, .phrase = &Texts::byProgram}};
    const auto samples = kernel.value("samples"_L1).toObject().value("limit"_L1).toArray();
    const auto known =
        std::ranges::count_if(samples, [](const auto &each) { return each.isString(); });
    QStringList parts;
    for (const Limit &limit : limits) {
        const auto count = std::ranges::count_if(
            samples, [&](const auto &each) { return each.toString() == limit.name; });
        if (count > 0) {
            const auto share =
                std::lround(100.0 * static_cast<double>(count) / static_cast<double>(known));
            parts += QString::fromUtf8(limit.phrase->in(language)).arg(share);
        }
    }
    return parts.isEmpty() ? u"–"_s : parts.join(", "_L1);
}

} // namespace

void writeDelays(Html &html, const QJsonObject &answer)
{
    struct Row
    {
        QLatin1StringView name;
        const Phrase *title;
    };
    constexpr std::array loads{Row{.name = "download_load"_L1, .title = &Texts::download},
                               Row{.name = "upload_load"_L1, .title = &Texts::upload},
                               Row{.name = "extra_download_load"_L1, .title = &Texts::madeDownload},
                               Row{.name = "extra_upload_load"_L1, .title = &Texts::madeUpload}};
    const auto test = answer.value("test"_L1).toObject();
    const auto of = [&](const Row &row) { return test.value(row.name).toObject(); };
    if (std::ranges::none_of(loads, [&](const Row &row) { return isKnown(of(row)); })) {
        return;
    }
    html << "<section class=\"card\" id=\"load\"><h2>" << Texts::underLoad << "</h2>\n";
    writeSentences(html, answer.value("under_load"_L1).toObject());
    html << "<div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\"" << Texts::underLoad
         << "\"><table>";
    writeHead(html, {&Texts::load, &Texts::median, &Texts::within95, &Texts::adds, &Texts::lost,
                     &Texts::congestion});
    const auto idle = test.value("idle"_L1).toObject();
    writeLoad(html, Texts::idleLine, idle);
    for (const Row &row : loads) {
        if (isKnown(of(row))) {
            writeLoad(html, *row.title, of(row));
        }
    }
    html << "</tbody></table></div><p class=\"quiet\">" << Texts::underLoadCaption;
    if (const auto jitter = whole(idle.value("jitter_ns"_L1))) {
        html << " ";
        html.phrase(Texts::jitterOf, {Figures::roundTrip(jitter, html.getLanguage())}) << ".";
    }
    html << "</p></section>\n";
}

void writeKernel(Html &html, const QJsonObject &answer)
{
    const auto service = answer.value("service"_L1).toObject();
    const std::array kernels{service.value("download"_L1).toObject().value("kernel"_L1).toObject(),
                             service.value("upload"_L1).toObject().value("kernel"_L1).toObject()};
    if (kernels[0].isEmpty() && kernels[1].isEmpty()) {
        return;
    }
    const auto language = html.getLanguage();
    html << "<section class=\"card\" id=\"kernel\"><h2>" << Texts::kernelTitle << "</h2><table>";
    writeHead(html, {&Texts::figure, &Texts::download, &Texts::upload});
    const auto row = [&](const Phrase &title, const auto &toText) {
        html << "<tr><th scope=\"row\">" << title << "</th>";
        for (const QJsonObject &kernel : kernels) {
            const QString text = toText(kernel);
            html << "<td class=\"n\">" << (text.isEmpty() ? u"–"_s : text) << "</td>";
        }
        html << "</tr>\n";
    };
    const auto time = [&](QLatin1StringView name) {
        return [name, language](const QJsonObject &kernel) {
            return Figures::roundTrip(whole(kernel.value(name)), language);
        };
    };
    row(Texts::congestion,
        [](const QJsonObject &kernel) { return kernel.value("congestion"_L1).toString(); });
    row(Texts::kernelMedian, time("rtt_median_ns"_L1));
    row(Texts::kernel95, time("rtt_p95_ns"_L1));
    row(Texts::kernelLeast, time("rtt_min_ns"_L1));
    row(Texts::sentAgain, [&](const QJsonObject &kernel) {
        const auto bytes = whole(kernel.value("retransmitted_bytes"_L1));
        return bytes ? Figures::bytes(*bytes, language) : QString();
    });
    row(Texts::heldBack, [&](const QJsonObject &kernel) { return heldBackBy(kernel, language); });
    html << "</tbody></table></section>\n";
}

} // namespace velometer::LoadCards
