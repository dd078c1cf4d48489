#include "cli/terminal/ProgressText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include <nlohmann/json.hpp>

#include "cli/terminal/CellText.h"

namespace olmkit {

namespace {

constexpr const char* gap = "  ";
constexpr std::size_t minBar = 12; // cells, including the brackets
constexpr std::size_t maxBar = 52;

template <typename... Values> std::string formatted(const char* format, Values... values) {
    std::array<char, 64> text = {};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

std::string sizeText(std::uint64_t bytes) {
    constexpr std::array<const char*, 5> units = {"B", "kB", "MB", "GB", "TB"};
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= 999.5 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    return formatted(unit == 0 || value >= 9.95 ? "%.0f %s" : "%.1f %s", value, units.at(unit));
}

std::string timeText(double seconds) {
    constexpr double maxSeconds = 359'999; // 99:59:59
    const auto whole = static_cast<unsigned>(std::min(std::ceil(seconds), maxSeconds));
    const unsigned minutes = whole / 60;
    return minutes < 60 ? formatted("%u:%02u", minutes, whole % 60)
                        : formatted("%u:%02u:%02u", minutes / 60, minutes % 60, whole % 60);
}

// Everything except the bar and the label.
std::string figures(const ProgressReport& report) {
    std::string text = std::to_string(report.done);
    text += report.total != 0 ? " of " + std::to_string(report.total) : " done";
    if (report.rate > 0) {
        text += gap + formatted(report.rate < 10 ? "%.1f/s" : "%.0f/s", report.rate);
    }
    if (report.bytes != 0) {
        text += gap + sizeText(report.bytes);
    }
    if (const auto left = report.secondsLeft(); left.has_value()) {
        text += gap + timeText(*left) + " left";
    }
    if (report.failed != 0) {
        text += gap + std::to_string(report.failed) + " failed";
    }
    return text;
}

std::string bar(const ProgressReport& report, std::size_t room) {
    const std::size_t inside = room - 2;
    const auto full =
        static_cast<std::size_t>(report.passed().value_or(0) * static_cast<double>(inside));
    const bool isFull = full >= inside;
    std::string text = "[";
    text.append(isFull ? inside : full, '=');
    if (!isFull) {
        text += '>';
        text.append(inside - full - 1, ' ');
    }
    text += ']';
    return text;
}

} // namespace

std::optional<double> ProgressReport::secondsLeft() const {
    if (total == 0 && share > 0) {
        return seconds * (1 - share) / share;
    }
    if (total == 0 || rate <= 0) {
        return std::nullopt;
    }
    return done < total ? static_cast<double>(total - done) / rate : 0.0;
}

std::optional<double> ProgressReport::passed() const {
    if (total != 0) {
        return static_cast<double>(done) / static_cast<double>(total);
    }
    return share > 0 ? std::optional(share) : std::nullopt;
}

std::string progressBar(const ProgressReport& report, const std::string& label, unsigned width) {
    std::string text = figures(report);
    std::size_t room = width > text.size() ? width - text.size() : 0;
    if (room == 0) {
        return text.substr(0, width);
    }
    constexpr std::size_t gapSize = std::string_view(gap).size();
    const bool hasBar = report.passed().has_value() && room >= minBar + gapSize;
    const std::size_t labelSize = label.empty() ? 0 : cellsOf(label) + gapSize;
    const bool hasLabel = labelSize + (hasBar ? minBar + gapSize : 0) <= room;
    room -= hasLabel ? labelSize : 0;
    if (hasBar) {
        text = bar(report, std::min(room - gapSize, maxBar)) + gap + text;
    }
    return hasLabel && labelSize != 0 ? label + gap + text : text;
}

std::string progressJson(const ProgressReport& report) {
    const auto thousandths = [](double value) { return std::round(value * 1000) / 1000; };
    nlohmann::ordered_json object;
    object["done"] = report.done;
    object["total"] = report.total != 0 ? nlohmann::ordered_json(report.total) : nullptr;
    object["bytes"] = report.bytes;
    object["failed"] = report.failed;
    object["seconds"] = thousandths(report.seconds);
    object["rate"] = thousandths(report.rate);
    const auto left = report.secondsLeft();
    object["seconds_left"] =
        left.has_value() ? nlohmann::ordered_json(thousandths(*left)) : nullptr;
    object["finished"] = report.isFinished;
    return object.dump() + "\n";
}

} // namespace olmkit
