#include "api/visible.h"
#include "figures/exportformat.h"
#include "http/api.h"
#include "http/apiview.h"
#include "http/gzip.h"

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

/// A document on its way, made batch by batch; from any thread, one at a time.
class Stream
{
public:
    Stream(ExportFormat::Kind documentKind, const Access &whoseAccess, bool inChunks, bool compress)
        : kind(documentKind)
        , access(whoseAccess)
        , chunked(inChunks)
    {
        if (compress) {
            packer.emplace();
        }
    }

    /// What is to be sent next; may be empty until the last batch.
    std::string add(const ReportStore::Documents &batch)
    {
        const bool isLast = batch.next.isEmpty();
        QByteArray text = hasBegun ? QByteArray() : ExportFormat::begin(kind);
        hasBegun = true;
        for (const auto &stored : batch.tests) {
            if (auto report = ReportTest::read(stored.document)) {
                text += ExportFormat::piece(
                    kind, Visible::report(*std::move(report), stored.row, access).test, isFirst);
                isFirst = false;
            }
        }
        text += isLast ? ExportFormat::end(kind) : QByteArray();
        const std::string bytes =
            packer ? packer->add({text.constData(), static_cast<std::size_t>(text.size())}, isLast)
                   : text.toStdString();
        // An empty chunk would be the end.
        return (bytes.empty() ? bytes : chunk(bytes)) + (isLast && chunked ? "0\r\n\r\n" : "");
    }

private:
    /// @p bytes as one chunk of the transfer coding, or as they are for a client of old.
    std::string chunk(const std::string &bytes) const
    {
        return chunked ? QByteArray::number(qsizetype(bytes.size()), 16).toStdString() + "\r\n" +
                             bytes + "\r\n"
                       : bytes;
    }

    ExportFormat::Kind kind;
    Access access;
    bool chunked;
    std::optional<GzipStream> packer;
    bool hasBegun = false;
    bool isFirst = true; ///< no test has been written
};

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
    Answer answer;
    answer.contentType = format->contentType;
    answer.headers = "Content-Disposition: attachment; filename=\"velometer." + name.toStdString() +
                     "\"\r\nVary: Accept-Encoding\r\n";
    answer.headers += request.takesChunks ? "Transfer-Encoding: chunked\r\n" : "";
    answer.headers += request.acceptsGzip ? "Content-Encoding: gzip\r\n" : "";

    const auto stream = std::make_shared<Stream>(format->kind, view->access, request.takesChunks,
                                                 request.acceptsGzip);
    QString after;
    std::string bytes = answer.head(std::nullopt);
    bool isFirst = true;
    do {
        OneShot<std::optional<ReportStore::Documents>> value(connection.executor(), storeTime);
        service.store->documents(view->scope, after, value.setter());
        const auto read = co_await value.wait();
        if (!read || !*read) {
            if (isFirst) {
                co_return storeFailed(service, 500);
            }
            // Without its last chunk the reader knows that the document is not whole.
            co_return std::nullopt;
        }
        const auto batch = std::make_shared<const ReportStore::Documents>(**read);
        const auto make = [batch, stream] { return stream->add(*batch); };
        const auto made = co_await offload(connection, service.pageMakers, make);
        if (!made) {
            co_return isFirst ? std::optional(Answer::later(
                                    "Too many questions are being answered for this address."))
                              : std::nullopt;
        }
        isFirst = false;
        bytes += *made;
        after = batch->next;
        const bool written = co_await connection.write(bytes, exportPatience);
        if (!written) {
            co_return std::nullopt;
        }
        bytes.clear();
    } while (!after.isEmpty());
    co_return std::nullopt;
}

} // namespace velometer::Api
