#include "ops/metrics.h"

namespace velometer {

void Metrics::countRequest(std::string_view endpoint, int status)
{
    const std::lock_guard lock(mutex);
    ++requests[{std::string(endpoint), status / 100}];
}

void Metrics::countRefusal(std::string_view reason)
{
    const std::lock_guard lock(mutex);
    ++refusals[std::string(reason)];
}

std::string Metrics::toText() const
{
    std::string text;
    const auto head = [&text](std::string_view name, std::string_view type, std::string_view help) {
        text.append("# HELP velometer_").append(name).append(1, ' ').append(help);
        text.append("\n# TYPE velometer_").append(name).append(1, ' ').append(type).append("\n");
    };
    const auto value = [&text](std::string_view name, const std::string &labels,
                               std::int64_t counter) {
        text.append("velometer_").append(name).append(labels).append(1, ' ');
        text.append(std::to_string(counter)).append("\n");
    };
    head("connections", "gauge", "Connections open now.");
    value("connections", {}, connections);
    head("connections_total", "counter", "Connections accepted.");
    value("connections_total", {}, connectionsTotal);
    head("streams", "gauge", "Measurement streams running now.");
    value("streams", "{direction=\"download\"}", downloads);
    value("streams", "{direction=\"upload\"}", uploads);
    head("streams_total", "counter", "Measurement streams started.");
    value("streams_total", "{direction=\"download\"}", downloadsTotal);
    value("streams_total", "{direction=\"upload\"}", uploadsTotal);
    head("stream_bytes_total", "counter", "Payload moved by measurement streams.");
    value("stream_bytes_total", "{direction=\"download\"}", bytesDown);
    value("stream_bytes_total", "{direction=\"upload\"}", bytesUp);
    head("loop_late_total", "counter", "Times the event loop was late by more than 100 ms.");
    value("loop_late_total", {}, loopLate);
    head("streams_late_total", "counter", "Streams that the service itself may have held up.");
    value("streams_late_total", {}, streamsLate);
    head("reports_stored_total", "counter", "Reports stored.");
    value("reports_stored_total", {}, reportsStored);
    head("reports_repeated_total", "counter", "Reports that were stored before.");
    value("reports_repeated_total", {}, reportsRepeated);
    head("reports_rejected_total", "counter", "Reports not taken.");
    for (std::size_t i = 0; i < rejections.size(); ++i) {
        value("reports_rejected_total", "{reason=\"" + std::string(rejections.at(i)) + "\"}",
              reportsRejected.at(i));
    }
    head("store_errors_total", "counter", "Operations that the report store failed.");
    value("store_errors_total", {}, storeErrors);
    const std::lock_guard lock(mutex);
    head("refusals_total", "counter", "Requests refused because too much was asked for.");
    for (const auto &[reason, count] : refusals) {
        value("refusals_total", "{reason=\"" + reason + "\"}", count);
    }
    head("requests_total", "counter", "Requests answered.");
    for (const auto &[request, count] : requests) {
        value("requests_total",
              "{endpoint=\"" + request.first + "\",status=\"" + std::to_string(request.second) +
                  "xx\"}",
              count);
    }
    return text;
}

} // namespace velometer
