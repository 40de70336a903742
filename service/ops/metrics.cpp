#include "ops/metrics.h"

#include <algorithm>

namespace velometer {

void Metrics::countRequest(std::string_view endpoint, int status, std::chrono::microseconds took)
{
    const auto bound = std::ranges::find_if(
        latencyBounds, [&](int ms) { return took <= std::chrono::milliseconds(ms); });
    const std::lock_guard lock(mutex);
    ++requests[{std::string(endpoint), status / 100}];
    Latencies &own = latencies[std::string(endpoint)];
    ++own.counts.at(static_cast<std::size_t>(bound - latencyBounds.begin()));
    own.micros += took.count();
}

void Metrics::countRefusal(std::string_view reason)
{
    const std::lock_guard lock(mutex);
    ++refusals[std::string(reason)];
}

std::string Metrics::toText(const std::vector<Gauge> &gauges) const
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
    const auto thousandths = [](std::int64_t count, std::int64_t unit) {
        std::string digits = std::to_string(count * 1000 / unit);
        digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
        return digits.insert(digits.size() - 3, 1, '.');
    };
    head("build_info", "gauge", "The program that runs.");
    value("build_info", "{version=\"" VELOMETER_VERSION "\"}", 1);
    for (const Gauge &gauge : gauges) {
        head(gauge.name, "gauge", gauge.help);
        value(gauge.name, {}, gauge.value);
    }
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
    head("loop_lateness_seconds_total", "counter", "By how much it was late in all those times.");
    text += "velometer_loop_lateness_seconds_total " + thousandths(loopLateMs, 1000) + '\n';
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
    head("request_duration_seconds", "histogram",
         "From the head of a request to the last byte of its answer.");
    for (const auto &[endpoint, own] : latencies) {
        const std::string label = "{endpoint=\"" + endpoint + "\"";
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < own.counts.size(); ++i) {
            sum += own.counts.at(i);
            value("request_duration_seconds_bucket",
                  label + ",le=\"" +
                      (i < latencyBounds.size() ? thousandths(latencyBounds.at(i), 1000)
                                                : std::string("+Inf")) +
                      "\"}",
                  sum);
        }
        text += "velometer_request_duration_seconds_sum" + label + "} " +
                thousandths(own.micros, 1'000'000) + '\n';
        value("request_duration_seconds_count", label + '}', sum);
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
