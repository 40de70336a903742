#include "ui/pages/filterchoices.h"

#include "utils/utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <optional>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Holds the context of the texts.
class ChoiceTexts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::FilterChoices)
};

/// What may be asked of the connection, in the order of the choice.
struct ConnectionOption
{
    const char *text;
    bool mobileOnly;
    std::optional<ConnectionKind> kind;
};

const ConnectionOption connectionOptions[] = {
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "All connections"), false, {}},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "Mobile"), true, {}},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "2G (GSM)"), false, ConnectionKind::Gsm},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "3G (UMTS)"), false, ConnectionKind::Umts},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "4G (LTE)"), false, ConnectionKind::Lte},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "5G"), false, ConnectionKind::Nr},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "WLAN"), false, ConnectionKind::Wlan},
    {QT_TRANSLATE_NOOP("velometer::FilterChoices", "Other and mixed"), false,
     ConnectionKind::Other},
};

constexpr ResultFilter::Period periods[] = {ResultFilter::Period::All, ResultFilter::Period::Day,
                                            ResultFilter::Period::Week, ResultFilter::Period::Month,
                                            ResultFilter::Period::Year};

constexpr ResultListing::Order orders[] = {ResultListing::Order::Newest,
                                           ResultListing::Order::Download,
                                           ResultListing::Order::Upload, ResultListing::Order::Rtt};

/// One of @p values, or with the first option none of them.
Choice choiceOf(const QString &title, const QString &all, const QStringList &values,
                const QStringList &texts, const QString &current,
                const std::function<void(const QString &)> &apply)
{
    Choice choice{.title = title, .options = QStringList(all) + texts, .chosen = {}};
    choice.current = current.isEmpty() ? 0 : static_cast<int>(values.indexOf(current)) + 1;
    choice.chosen = [values, apply](int index) { apply(values.value(index - 1)); };
    return choice;
}

QString placeName(const QString &code)
{
    const QString name = Utils::trLocationShort(code);
    return name.isEmpty() ? code : name;
}

} // namespace

Choice FilterChoices::connection(const ResultFilter &filter, const Apply &apply)
{
    Choice choice{.title = ChoiceTexts::tr("Connection"), .options = {}, .chosen = {}};
    for (const ConnectionOption &each : connectionOptions) {
        if (each.mobileOnly == filter.mobileOnly && each.kind == filter.kind) {
            choice.current = static_cast<int>(choice.options.size());
        }
        choice.options.append(ChoiceTexts::tr(each.text));
    }
    choice.chosen = [filter, apply](int index) {
        ResultFilter changed = filter;
        changed.mobileOnly = connectionOptions[index].mobileOnly;
        changed.kind = connectionOptions[index].kind;
        apply(changed);
    };
    return choice;
}

Choice FilterChoices::period(const ResultFilter &filter, const Apply &apply)
{
    Choice choice{.title = ChoiceTexts::tr("Period"), .options = {}, .chosen = {}};
    for (const ResultFilter::Period each : periods) {
        if (each == filter.period) {
            choice.current = static_cast<int>(choice.options.size());
        }
        choice.options.append(periodText(each));
    }
    choice.chosen = [filter, apply](int index) {
        ResultFilter changed = filter;
        changed.period = periods[index];
        apply(changed);
    };
    return choice;
}

Choice FilterChoices::place(const ResultFilter &filter, const QStringList &codes,
                            const Apply &apply)
{
    QStringList names;
    std::transform(codes.begin(), codes.end(), std::back_inserter(names), placeName);
    return choiceOf(ChoiceTexts::tr("Place"), ChoiceTexts::tr("All places"), codes, names,
                    filter.location, [filter, apply](const QString &code) {
                        ResultFilter changed = filter;
                        changed.location = code;
                        apply(changed);
                    });
}

Choice FilterChoices::server(const ResultFilter &filter, const QStringList &hosts,
                             const Apply &apply)
{
    return choiceOf(ChoiceTexts::tr("Test Server"), ChoiceTexts::tr("All servers"), hosts, hosts,
                    filter.server, [filter, apply](const QString &host) {
                        ResultFilter changed = filter;
                        changed.server = host;
                        apply(changed);
                    });
}

Choice FilterChoices::order(ResultListing::Order current,
                            const std::function<void(ResultListing::Order)> &apply)
{
    Choice choice{.title = ChoiceTexts::tr("Sort"),
                  .options = {},
                  .current = static_cast<int>(current),
                  .chosen = [apply](int index) { apply(orders[index]); }};
    for (const ResultListing::Order each : orders) {
        choice.options.append(orderText(each));
    }
    return choice;
}

QString FilterChoices::connectionText(const ResultFilter &filter)
{
    if (filter.kind || filter.mobileOnly) {
        for (const ConnectionOption &each : connectionOptions) {
            if (each.kind == filter.kind && (each.kind || each.mobileOnly)) {
                return ChoiceTexts::tr(each.text);
            }
        }
    }
    return ChoiceTexts::tr("Connection");
}

QString FilterChoices::periodText(ResultFilter::Period period)
{
    switch (period) {
    case ResultFilter::Period::All: break;
    case ResultFilter::Period::Day: return ChoiceTexts::tr("24 hours");
    case ResultFilter::Period::Week: return ChoiceTexts::tr("7 days");
    case ResultFilter::Period::Month: return ChoiceTexts::tr("30 days");
    case ResultFilter::Period::Year: return ChoiceTexts::tr("12 months");
    }
    return ChoiceTexts::tr("Any time");
}

QString FilterChoices::placeText(const ResultFilter &filter)
{
    return filter.location.isEmpty() ? ChoiceTexts::tr("Place") : placeName(filter.location);
}

QString FilterChoices::serverText(const ResultFilter &filter)
{
    return filter.server.isEmpty() ? ChoiceTexts::tr("Server") : filter.server;
}

QString FilterChoices::orderText(ResultListing::Order order)
{
    switch (order) {
    case ResultListing::Order::Newest: break;
    case ResultListing::Order::Download: return ChoiceTexts::tr("Fastest download");
    case ResultListing::Order::Upload: return ChoiceTexts::tr("Fastest upload");
    case ResultListing::Order::Rtt: return ChoiceTexts::tr("Shortest RTT");
    }
    return ChoiceTexts::tr("Newest first");
}

} // namespace velometer
