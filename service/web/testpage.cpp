#include "web/testpage.h"

#include "web/figures.h"
#include "web/loadcards.h"
#include "web/testlist.h"
#include "web/texts.h"
#include "web/typesigns.h"

#include <QJsonArray>

#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

std::optional<qint64> number(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toInteger()) : std::nullopt;
}

QString words(const Phrase &phrase, Language language)
{
    return QString::fromUtf8(phrase.in(language));
}

using ToText = QString (*)(std::optional<qint64>, Language);

QString bytesText(std::optional<qint64> count, Language language)
{
    return count ? Figures::bytes(*count, language) : u"–"_s;
}

/// @p ns as seconds where it is one or more.
QString durationText(std::optional<qint64> ns, Language language)
{
    constexpr qint64 second = 1'000'000'000;
    return ns && *ns >= second
               ? Figures::decimal(static_cast<double>(*ns) / 1e9, 2, language) + u" s"_s
               : Figures::roundTrip(ns, language);
}

QString millisecondsText(std::optional<qint64> ms, Language language)
{
    return durationText(ms ? std::optional(*ms * 1'000'000) : std::nullopt, language);
}

void writeHeading(Html &html, const SingleTestPage &page)
{
    const auto &[viewer, row, test] = page;
    html << "<p><a href=\"" << viewer.address(viewer.listPage()) << "\">← " << Texts::back
         << "</a></p>\n<div class=\"heading\"><div><h1>";
    TypeSigns::write(html, row.type);
    html.phrase(Texts::testTitle, {QString::number(row.seriesId), QString::number(row.testId)});
    html << "</h1><p class=\"quiet\">" << Figures::moment(row.time) << " UTC · "
         << TypeSigns::name(row.type);
    for (const QString &word :
         {TypeSigns::place(row.location, viewer.language), row.network, row.server}) {
        if (!word.isEmpty()) {
            html << " · " << word;
        }
    }
    html << " · " << TestList::seenWords(row) << "</p></div>\n";
}

void writeActions(Html &html, const SingleTestPage &page)
{
    const auto &viewer = page.viewer;
    if (viewer.isOwner()) {
        html << "<div class=\"actions\"><details class=\"menu\"><summary class=\"pill\">"
             << Texts::share << "</summary><form class=\"sheet\" id=\"share\" data-test=\""
             << page.row.id << "\"><p class=\"quiet\">" << Texts::shareTestHint
             << "</p><label class=\"check\"><input type=\"checkbox\" name=\"positions\">"
             << Texts::sharePositions << "</label><label><span>" << Texts::shareDays
             << "</span><input type=\"number\" name=\"days\" min=\"1\" max=\"365\" value=\"30\" "
                "required></label><button class=\"filled\">"
             << Texts::shareMake << "</button><output></output><h3>" << Texts::shareList
             << "</h3><ul class=\"shares\"></ul></form></details>\n"
                "<details class=\"menu\"><summary class=\"pill danger\">"
             << Texts::remove << "</summary><form class=\"sheet\" id=\"delete-test\" data-test=\""
             << page.row.id << "\" data-back=\"" << viewer.address(viewer.listPage()) << "\"><h3>"
             << Texts::removeTest << "</h3><p>";
        html.phrase(Texts::removeTestHint, {u"DELETE"_s});
        html << "</p><label><span>" << Texts::confirmation
             << "</span><input name=\"confirm\" autocomplete=\"off\" required></label><button "
                "class=\"pill danger\">"
             << Texts::removeTest << "</button><output></output></form></details></div>\n";
    }
    html << "</div>\n";
}

void writeCard(Html &html, const QString &kind, const Phrase &title, std::optional<qint64> value,
               std::optional<qint64> least, std::optional<qint64> greatest, ToText toText)
{
    const auto language = html.getLanguage();
    const QString text = toText(value, language);
    const auto unit = text.lastIndexOf(u' ');
    html << "<div class=\"card figure " << kind << "\"><h2>" << title << "</h2><p><strong>"
         << (unit < 0 ? text : text.left(unit)) << "</strong> <span class=\"unit\">"
         << (unit < 0 ? QString() : text.sliced(unit + 1)) << "</span></p><p class=\"quiet\">";
    if (least && greatest) {
        html << Figures::range(toText(least, language), toText(greatest, language), Texts::between,
                               language);
    }
    html << "</p></div>\n";
}

void writeCards(Html &html, const SingleTestPage &page)
{
    const auto figures = page.test.value("test"_L1).toObject();
    const auto of = [&](QLatin1StringView group, QLatin1StringView name) {
        return number(figures.value(group).toObject().value(name));
    };
    const bool backed = page.row.verified;
    const auto shown = [backed](std::optional<qint64> value) {
        return backed ? value : std::nullopt;
    };
    const bool served = of("upload"_L1, "server_avg_bps"_L1).has_value();
    html << "<section class=\"cards\" aria-label=\"" << Texts::summary << "\">\n";
    writeCard(html, u"down"_s, Texts::download, page.row.download,
              shown(of("download"_L1, "min_bps"_L1)), shown(of("download"_L1, "max_bps"_L1)),
              Figures::rate);
    writeCard(html, u"up"_s, Texts::upload, page.row.upload,
              shown(of("upload"_L1, served ? "server_min_bps"_L1 : "min_bps"_L1)),
              shown(of("upload"_L1, served ? "server_max_bps"_L1 : "max_bps"_L1)), Figures::rate);
    writeCard(html, u"rtt"_s, Texts::rtt, page.row.rtt, of("rtt"_L1, "min_ns"_L1),
              of("rtt"_L1, "max_ns"_L1), Figures::roundTrip);
    html << "</section>\n";
    if (!backed) {
        html << "<p class=\"hint\">" << Texts::noStream << "</p>\n";
    }
    if (page.row.serviceLate) {
        html << "<p class=\"hint\">* " << Texts::lateMark << "</p>\n";
    }
}

/// A row of what both ends counted, and how far they agree.
void writeBoth(Html &html, const QString &title, const QString &device, const QString &service)
{
    html << "<tr><th scope=\"row\">" << title << "</th><td class=\"n\">" << device
         << "</td><td class=\"n\">" << service << "</td></tr>\n";
}

void writeBothViews(Html &html, const SingleTestPage &page)
{
    const auto language = page.viewer.language;
    const auto test = page.test.value("test"_L1).toObject();
    const auto service = page.test.value("service"_L1).toObject();
    html << "<section class=\"card\"><h2>" << Texts::bothViews
         << "</h2><table><thead><tr><th scope=\"col\">" << Texts::figure
         << "</th><th scope=\"col\" class=\"n\">" << Texts::device
         << "</th><th scope=\"col\" class=\"n\">" << Texts::service
         << "</th></tr></thead><tbody>\n";
    for (const auto &[key, name] :
         {std::pair{"download"_L1, &Texts::download}, {"upload"_L1, &Texts::upload}}) {
        const auto device = test.value(key).toObject();
        const auto seen = service.value(key).toObject();
        const QString title = words(*name, language) + u", "_s;
        writeBoth(html, title + words(Texts::average, language),
                  Figures::rate(number(device.value("avg_bps"_L1)), language),
                  Figures::rate(number(seen.value("avg_bps"_L1)), language));
        if (const auto steady = number(device.value("steady_bps"_L1))) {
            writeBoth(html, title + words(Texts::steadyRate, language),
                      Figures::rate(steady, language), u"–"_s);
        }
        writeBoth(html, title + words(Texts::bytes, language),
                  bytesText(number(device.value("bytes"_L1)), language),
                  bytesText(number(seen.value("bytes"_L1)), language));
        writeBoth(html, title + words(Texts::duration, language),
                  durationText(number(device.value("duration_ns"_L1)), language),
                  millisecondsText(number(seen.value("lasted_ms"_L1)), language));
    }
    html << "</tbody></table>";
    const auto agree = service.value("agree_percent"_L1).toObject();
    for (const auto &[key, name] :
         {std::pair{"download"_L1, &Texts::download}, {"upload"_L1, &Texts::upload}}) {
        if (const auto percent = number(agree.value(key))) {
            html << "<p class=\"good\">✓ " << *name << ": ";
            html.phrase(Texts::agrees, {QString::number(100 - *percent)}) << "</p>";
        }
    }
    html << "</section>\n";
}

void writePhases(Html &html, const SingleTestPage &page)
{
    const auto language = page.viewer.language;
    html << "<section class=\"card\"><h2>" << Texts::phases
         << "</h2><div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\"" << Texts::phases
         << "\"><table><thead><tr>";
    for (const auto *title : {&Texts::phase, &Texts::time, &Texts::mode, &Texts::cell,
                              &Texts::signal, &Texts::position}) {
        html << "<th scope=\"col\">" << *title << "</th>";
    }
    html << "</tr></thead><tbody>\n";
    for (const auto &value : page.test.value("phases"_L1).toArray()) {
        const auto phase = value.toObject();
        const auto mode = phase.value("mode"_L1).toString();
        const auto type = ConnectionClasses::ofReport(mode);
        const auto cell = number(phase.value("cell"_L1));
        const auto signal = number(phase.value("signal"_L1));
        const auto time = number(phase.value("time_ms"_L1));
        html << "<tr><th scope=\"row\">" << phase.value("phase"_L1).toString() << "</th><td>"
             << (time ? Figures::moment(*time).right(8) : u"–"_s) << "</td><td>"
             << (type == ConnectionClass::Other ? mode : words(TypeSigns::name(type), language))
             << "</td><td>" << (cell && *cell > 0 ? QString::number(*cell) : u"–"_s) << "</td><td>"
             << (signal && *signal >= 0 ? QString::number(*signal) + u" %"_s : u"–"_s)
             << "</td><td>";
        const auto latitude = phase.value("latitude"_L1);
        const auto longitude = phase.value("longitude"_L1);
        if (latitude.isDouble() && longitude.isDouble()) {
            html << Figures::decimal(latitude.toDouble(), 4, language) << "° / "
                 << Figures::decimal(longitude.toDouble(), 4, language) << "°";
            if (phase.value("gps_lock"_L1).toBool()) {
                html << " (" << Texts::gpsLock << ")";
            }
        } else {
            html << "–";
        }
        html << "</td></tr>\n";
    }
    html << "</tbody></table></div></section>\n";
}

QString valueText(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool: return value.toBool() ? u"✓"_s : u"✕"_s;
    case QJsonValue::Double: {
        const double real = value.toDouble();
        return QString::number(real, 'g', 12);
    }
    case QJsonValue::String: return value.toString();
    default: break;
    }
    return u"–"_s;
}

/// Everything that has a value, by the names that programs know it by.
void writeAll(Html &html, const QString &prefix, const QJsonObject &object)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString name = prefix.isEmpty() ? member.key() : prefix + u'.' + member.key();
        if (member->isObject()) {
            writeAll(html, name, member->toObject());
        } else if (!member->isNull() && !member->isArray()) {
            html << "<div><dt>" << name << "</dt><dd>" << valueText(*member) << "</dd></div>";
        }
    }
}

void writeNote(Html &html, const SingleTestPage &page)
{
    if (!page.viewer.isOwner()) {
        return;
    }
    html << "<section class=\"card\"><h2 id=\"note-title\">" << Texts::note
         << "</h2><form class=\"stack\" id=\"note\" data-test=\"" << page.row.id
         << "\"><p class=\"quiet\" id=\"note-hint\">" << Texts::noteHint
         << "</p><textarea name=\"note\" maxlength=\"500\" aria-labelledby=\"note-title\" "
            "aria-describedby=\"note-hint\">\n"
         << page.row.note << "</textarea><button class=\"filled\">" << Texts::save
         << "</button><output></output></form></section>\n";
}

} // namespace

std::string SingleTestPage::toHtml(const TileSource &tiles) const
{
    Html html(viewer.language);
    writeHeading(html, *this);
    writeActions(html, *this);
    if (!viewer.isOwner()) {
        html << "<p class=\"hint\">" << Texts::sharedHint << "</p>\n";
    }
    writeCards(html, *this);
    const bool placed = viewer.showsPositions && row.latitude && row.longitude;
    html << "<noscript><p class=\"card\">" << Texts::needsScript
         << "</p></noscript>\n<div class=\"two\"><section class=\"card scripted\" id=\"curves\" "
            "data-test=\""
         << row.id << "\"><h2>" << Texts::rateCurve
         << "</h2><figure data-metric=\"download\"><figcaption>" << Texts::download
         << "</figcaption><div class=\"plot\"></div></figure><figure "
            "data-metric=\"upload\"><figcaption>"
         << Texts::upload
         << "</figcaption><div class=\"plot\"></div></figure><figure "
            "data-metric=\"rtt\"><figcaption>"
         << Texts::roundTrips << "</figcaption><div class=\"plot\"></div></figure></section>\n";
    if (placed) {
        html << "<section class=\"card scripted mapcard\"><h2>" << Texts::map
             << "</h2><div id=\"map\"></div></section>\n";
    }
    html << "</div>\n";
    LoadCards::writeDelays(html, test);
    html << "<div class=\"two even\">";
    writeBothViews(html, *this);
    LoadCards::writeKernel(html, test);
    writeNote(html, *this);
    html << "</div>\n";
    writePhases(html, *this);
    html << "<details class=\"card\"><summary><h2>" << Texts::details
         << "</h2></summary><dl class=\"facts\">";
    writeAll(html, {}, test.value("test"_L1).toObject());
    html << "</dl></details>\n";
    if (const QString log = test.value("log"_L1).toString(); !log.isEmpty()) {
        html << "<details class=\"card\"><summary><h2>" << Texts::log
             << "</h2></summary><pre tabindex=\"0\">" << log << "</pre></details>\n";
    }
    Viewer other = viewer;
    other.language = viewer.language == Language::German ? Language::English : Language::German;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(Texts::testTitle.in(viewer.language))
                               .arg(row.seriesId)
                               .arg(row.testId),
                  .otherLanguage =
                      other.address(u"Test"_s, {}, {{u"test"_s, QString::number(row.id)}}),
                  .script = u"test.js"_s,
                  .current = u"Test"_s,
                  .tiles = tiles,
                  .libraries = true}
        .around(html);
}

} // namespace velometer
