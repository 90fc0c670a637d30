// The weather of a place in a few sentences, for now, today, tonight and tomorrow: what matters first, no
// number twice, nothing about nothing. Pure.
#pragma once

#include "analysis/precip_predictor.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_data.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

enum class BriefPart { now, today, tonight, tomorrow };
template <>
inline constexpr auto enumNames<BriefPart> =
    std::to_array<std::string_view>({"now", "today", "tonight", "tomorrow"});
static_assert(enumNamesComplete(BriefPart::tomorrow));

struct Brief {
  /// By part; empty where there is nothing to say, as of today late in the evening.
  std::array<std::string, enumNames<BriefPart>.size()> parts;
  /// Those that say something, in the order of time: before five in the morning tonight comes before today.
  std::vector<BriefPart> order;

  std::string const& operator[](BriefPart part) const { return parts[static_cast<std::size_t>(part)]; }
  std::string& operator[](BriefPart part) { return parts[static_cast<std::size_t>(part)]; }
  bool operator==(Brief const&) const = default;
};

/// What is known beside the forecast.
struct BriefBeside {
  std::span<WeatherAlert const> warnings;  ///< official ones in effect or announced
  std::span<WeatherAlert const> alerts;    ///< generated ones
  std::optional<PrecipOutlook> nowcast;
  std::string climate;  ///< "5° warmer than usual for mid-November", without a full stop; may be empty
};

/// At most five sentences and, as far as the forecast reaches, three. Day is from 6 to 18, night from 18 to
/// 6, tomorrow from 6 on, in the forecast's own zone, else in that of `fallback`.
Brief weatherBrief(WeatherData const& weather, BriefBeside const& beside, Instant now, Units const& units,
                   Texts const& texts, Calendar const& fallback = Calendar::utc());

/// The parts in their order with their names: "Today: …". One line each, or one paragraph.
std::string briefText(Brief const& brief, Texts const& texts, std::string_view between = "\n");

}  // namespace nimbara
