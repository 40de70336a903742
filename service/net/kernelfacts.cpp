#include "net/kernelfacts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velometer {

namespace {

constexpr std::string_view begin = "congestion control ";
constexpr std::string_view columns = "; ms rtt_us min_rtt_us bit/s retransmitted limit: ";
constexpr std::string_view between = "; ";
constexpr std::array<std::string_view, 5> limits{"-", "window", "receiver", "buffer",
                                                 "application"};

std::string textOf(const KernelSample::Number &number)
{
    return number ? std::to_string(*number) : "-";
}

/// Takes @p text up to @p end, or all of it, away from its front.
std::string_view take(std::string_view &text, std::string_view end)
{
    const auto place = text.find(end);
    const auto front = text.substr(0, place);
    text.remove_prefix(place == std::string_view::npos ? text.size() : place + end.size());
    return front;
}

/// False when @p text is neither a number nor "-".
bool read(std::string_view text, KernelSample::Number &number)
{
    if (text == "-") {
        return true;
    }
    std::int64_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    number = value;
    return error == std::errc() && rest == text.data() + text.size() && value >= 0;
}

std::optional<KernelSample> readSample(std::string_view text)
{
    KernelSample sample;
    KernelSample::Number time;
    const bool isWhole = read(take(text, " "), time) && time && read(take(text, " "), sample.rtt) &&
                         read(take(text, " "), sample.minRtt) &&
                         read(take(text, " "), sample.rate) &&
                         read(take(text, " "), sample.retransmitted);
    const auto limit = std::ranges::find(limits, text);
    if (!isWhole || limit == limits.end()) {
        return std::nullopt;
    }
    sample.time = *time;
    sample.limit = static_cast<KernelSample::Limit>(limit - limits.begin());
    return sample;
}

} // namespace

std::string KernelFacts::toText() const
{
    std::string text(begin);
    text += congestion;
    text += columns;
    for (const KernelSample &sample : samples) {
        text += &sample == samples.data() ? "" : between;
        text += std::to_string(sample.time);
        for (const auto &number : {sample.rtt, sample.minRtt, sample.rate, sample.retransmitted}) {
            text += ' ' + textOf(number);
        }
        text += ' ';
        text += limits.at(static_cast<std::size_t>(sample.limit));
    }
    return text;
}

std::optional<KernelFacts> KernelFacts::parse(std::string_view text)
{
    if (!text.starts_with(begin) || text.find(columns) == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(begin.size());
    KernelFacts facts;
    facts.congestion = take(text, columns);
    while (!text.empty()) {
        const auto sample = readSample(take(text, between));
        if (!sample || facts.samples.size() == mostSamples) {
            return std::nullopt;
        }
        facts.samples.push_back(*sample);
    }
    return facts;
}

KernelSample::Number KernelFacts::leastRtt() const
{
    KernelSample::Number least;
    for (const KernelSample &sample : samples) {
        for (const auto &rtt : {sample.rtt, sample.minRtt}) {
            if (rtt && (!least || *rtt < *least)) {
                least = rtt;
            }
        }
    }
    return least;
}

KernelSample::Number KernelFacts::rttOf(double share) const
{
    std::vector<std::int64_t> times;
    for (const KernelSample &sample : samples) {
        if (sample.rtt) {
            times.push_back(*sample.rtt);
        }
    }
    if (times.empty()) {
        return std::nullopt;
    }
    const auto place =
        static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(times.size())) - 1);
    const auto found = times.begin() + std::clamp(place, std::ptrdiff_t{0}, std::ssize(times) - 1);
    std::ranges::nth_element(times, found);
    return *found;
}

KernelSample::Number KernelFacts::retransmitted() const
{
    return samples.empty() ? std::nullopt : samples.back().retransmitted;
}

} // namespace velometer
