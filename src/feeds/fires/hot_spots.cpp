// The table of hot spots: lines of values between commas, named by the first line.
#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fires/fire_detection.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Cells = std::vector<std::string_view>;

enum Column : std::size_t { latitude, longitude, acqDate, acqTime, confidence, frp, columnCount };

constexpr std::array<std::string_view, columnCount> kColumns{"latitude", "longitude",  "acq_date",
                                                             "acq_time", "confidence", "frp"};
constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);
/// Where each column stands; all but the power are needed.
using Layout = std::array<std::size_t, columnCount>;

/// Shares of 100, as one kind of satellite tells its confidence.
constexpr double kLeastNominal = 30;
constexpr double kLeastHigh = 80;

std::optional<Layout> layoutOf(std::string_view header) {
  Cells const names = split(header, ',');
  Layout layout{};
  for (std::size_t column = 0; column < columnCount; ++column) {
    auto const found = std::ranges::find_if(
        names, [&](std::string_view name) { return asciiLowered(trimmed(name)) == kColumns[column]; });
    layout[column] = found == names.end() ? kAbsent : static_cast<std::size_t>(found - names.begin());
    if (layout[column] == kAbsent && column != Column::frp) return std::nullopt;
  }
  return layout;
}

std::optional<FireConfidence> confidenceOf(std::string_view text) {
  std::string const word = asciiLowered(text);
  if (word == "l" || word == "low") return FireConfidence::low;
  if (word == "n" || word == "nominal") return FireConfidence::nominal;
  if (word == "h" || word == "high") return FireConfidence::high;
  auto const share = parseDouble(text);
  if (!share) return std::nullopt;
  return *share < kLeastNominal ? FireConfidence::low
         : *share < kLeastHigh  ? FireConfidence::nominal
                                : FireConfidence::high;
}

/// "2026-11-21" and "730" or "0730": hours and minutes of Greenwich, without their leading zeros.
std::optional<Instant> timeOf(std::string_view dateText, std::string_view timeText) {
  auto const date = parseDate(dateText);
  auto const clock = parseInteger(timeText);
  if (!date || !clock || timeText.size() > 4 || *clock < 0) return std::nullopt;
  int const hour = *clock / 100;
  int const minute = *clock % 100;
  if (hour > 23 || minute > 59) return std::nullopt;
  return std::chrono::sys_days(*date) + std::chrono::hours(hour) + std::chrono::minutes(minute);
}

std::optional<HotSpot> spotOf(Cells const& cells, Layout const& layout) {
  auto const cell = [&](Column column) {
    return layout[column] < cells.size() ? trimmed(cells[layout[column]]) : std::string_view();
  };
  auto const north = parseDouble(cell(latitude));
  auto const east = parseDouble(cell(longitude));
  auto const time = timeOf(cell(acqDate), cell(acqTime));
  auto const sureness = confidenceOf(cell(confidence));
  if (!north || !east || !isValid({*north, *east}) || !time || !sureness) return std::nullopt;
  return HotSpot{{*north, *east}, *time, std::max(0.0, parseDouble(cell(frp)).value_or(0)), *sureness};
}

}  // namespace

Result<std::vector<HotSpot>, DecodeError> parseHotSpots(std::string_view body) {
  std::size_t const end = body.find('\n');
  auto const layout = layoutOf(body.substr(0, end));
  if (!layout) {
    constexpr std::size_t kQuoted = 80;
    return std::unexpected(
        DecodeError{"", "it says \"" + oneLine(body.substr(0, 4 * kQuoted), kQuoted) + "\""});
  }
  std::vector<HotSpot> spots;
  std::size_t rows = 0;
  std::size_t unreadable = 0;
  for (std::size_t begin = end; begin < body.size();) {
    std::size_t const next = std::min(body.find('\n', begin + 1), body.size());
    std::string_view const line = trimmed(body.substr(begin, next - begin));
    begin = next;
    if (line.empty()) continue;
    ++rows;
    auto const spot = spotOf(split(line, ','), *layout);
    if (!spot) ++unreadable;
    if (spot && spot->confidence != FireConfidence::low) spots.push_back(*spot);
  }
  // Here and there a damaged row is nothing; where most are, the table has changed.
  if (2 * unreadable > rows) {
    return std::unexpected(DecodeError{
        "", std::to_string(unreadable) + " of the " + std::to_string(rows) + " rows cannot be read"});
  }
  return spots;
}

}  // namespace nimbara
