#include "api/testanswer.h"
#include "figures/exportformat.h"
#include "http/api.h"
#include "http/apiview.h"

#include <algorithm>
#include <array>

namespace velometer::Api {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A reader that takes nothing for so long has gone.
constexpr auto exportPatience = 60s;

struct Format
{
    QLatin1StringView name;
    ExportFormat::Kind kind;
    std::string_view contentType;
};

constexpr std::array formats{
    Format{"csv"_L1, ExportFormat::Kind::Csv, "text/csv; charset=utf-8"},
    Format{"json"_L1, ExportFormat::Kind::Json, "application/x-ndjson"},
    Format{"geojson"_L1, ExportFormat::Kind::GeoJson, "application/geo+json"},
    Format{"gpx"_L1, ExportFormat::Kind::Gpx, "application/gpx+xml"},
};

/// Some of the tests as pieces of the document.
QByteArray pieces(const ReportStore::Documents &batch, const ApiView &view, ExportFormat::Kind kind,
                  bool first)
{
    QByteArray text;
    for (const auto &stored : batch.tests) {
        if (const auto report = ReportTest::read(stored.document)) {
            text += ExportFormat::piece(kind, TestJson::shown(report->test, stored.row, view.view),
                                        first);
            first = false;
        }
    }
    return text;
}

/// @p bytes as one chunk of the transfer coding, or as they are for a client of old.
std::string chunk(const QByteArray &bytes, bool chunked)
{
    if (!chunked) {
        return bytes.toStdString();
    }
    return QByteArray::number(bytes.size(), 16).toStdString() + "\r\n" + bytes.toStdString() +
           "\r\n";
}

} // namespace

Handled exportTests(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Read);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto view = std::make_shared<const ApiView>(std::get<ApiView>(std::move(opened)));
    const QString name = view->query.value(u"format").value_or(QString());
    const auto *const format =
        std::ranges::find_if(formats, [&](const Format &each) { return name == each.name; });
    if (format == formats.end()) {
        co_return Answer::sentence(400, "The parameter format is csv, json, geojson or gpx.");
    }
    const auto kind = format->kind;
    const bool chunked = request.takesChunks;
    Answer answer;
    answer.contentType = format->contentType;
    answer.headers =
        "Content-Disposition: attachment; filename=\"velometer." + name.toStdString() + "\"\r\n";
    answer.headers += chunked ? "Transfer-Encoding: chunked\r\n" : "";

    QString after;
    bool first = true;
    bool more = true;
    std::string bytes = answer.head(std::nullopt);
    if (const QByteArray begin = ExportFormat::begin(kind); !begin.isEmpty()) {
        bytes += chunk(begin, chunked);
    }
    while (more) {
        OneShot<std::optional<ReportStore::Documents>> value(connection.executor(), storeTime);
        service.store->documents(view->scope, after, value.setter());
        const auto read = co_await value.wait();
        if (!read || !*read) {
            if (first) {
                co_return storeFailed(service, 500);
            }
            // Without its last chunk the reader knows that the document is not whole.
            co_return std::nullopt;
        }
        const auto batch = std::make_shared<const ReportStore::Documents>(**read);
        const auto make = [batch, view, kind, first] { return pieces(*batch, *view, kind, first); };
        const auto made = co_await offload(connection, service.pageMakers, make);
        if (!made && first) {
            co_return Answer::later("Too many questions are being answered for this address.");
        }
        first = first && (!made || made->isEmpty());
        if (made && !made->isEmpty()) {
            bytes += chunk(*made, chunked);
        }
        after = batch->next;
        more = made && !after.isEmpty();
        if (!more && made) {
            const QByteArray end = ExportFormat::end(kind);
            bytes += end.isEmpty() ? std::string() : chunk(end, chunked);
            bytes += chunked ? "0\r\n\r\n" : "";
        }
        if (!co_await connection.write(bytes, exportPatience) || !made) {
            co_return std::nullopt;
        }
        bytes.clear();
    }
    co_return std::nullopt;
}

} // namespace velometer::Api
