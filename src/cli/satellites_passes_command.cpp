#include "base/display_text.h"
#include "base/number.h"
#include "base/text.h"
#include "cli/satellite_source.h"
#include "cli/satellites_commands.h"
#include "cli/satellites_text.h"
#include "cli/terminal.h"
#include "globe/satellite_passes.h"
#include "model/process.h"

namespace nimbara {

namespace {

constexpr std::string_view kDefaultSatellite = "ISS";

struct ListedPass {
  std::string name;
  SatellitePass pass;
  std::optional<int> cloudCover;  ///< % in the hour of the culmination; absent without a forecast
};

/// Seconds are enough for people and keep the document short.
SatellitePass rounded(SatellitePass pass) {
  for (PassMoment* const moment : {&pass.rise, &pass.culmination, &pass.set}) {
    moment->time = std::chrono::round<std::chrono::seconds>(moment->time);
  }
  if (pass.visible) {
    pass.visible->from = std::chrono::ceil<std::chrono::seconds>(pass.visible->from);
    pass.visible->to = std::chrono::floor<std::chrono::seconds>(pass.visible->to);
  }
  return pass;
}

std::string json(std::vector<ListedPass> const& passes) {
  JsonWriter writer;
  writer.beginList();
  for (auto const& [name, pass, cloudCover] : passes) {
    writer.separate();
    writer.beginObject();
    writer.member("name", name);
    writer.member("rise", pass.rise);
    writer.member("culmination", pass.culmination);
    writer.member("set", pass.set);
    writer.member("sunlit", pass.sunlit);
    writer.member("skyDark", pass.skyDark);
    writer.memberOrNull("visible", pass.visible);
    writer.memberOrNull("cloudCover", cloudCover);
    writer.endObject();
  }
  writer.endList();
  return writer.take() + "\n";
}

/// "2026-11-21 18:03:20" by the calendar.
std::string clockText(Instant instant, Calendar const& calendar) {
  std::string text = formatIso8601(Instant(calendar.local(instant).time_since_epoch()));
  text.resize(19);
  text[10] = ' ';
  return text;
}

/// Per cent in the hour that holds the moment.
std::optional<int> cloudCoverAt(WeatherData const* data, Instant instant) {
  if (data == nullptr) return std::nullopt;
  for (auto const& hour : data->allHourly) {
    bool const holds = hour.date <= instant && instant < hour.date + std::chrono::hours(1);
    if (holds && hour.has(WeatherDetailField::cloudCover)) return hour.cloudCover;
  }
  return std::nullopt;
}

/// "18:03:20" by the calendar.
std::string timeText(Instant instant, Calendar const& calendar) {
  return clockText(instant, calendar).substr(11);
}

std::string rowText(ListedPass const& listed, Calendar const& calendar) {
  auto const& [name, pass, cloudCover] = listed;
  auto const right = [](double degrees, int width) {
    return fitted(angleText(degrees, 0), width, Align::right);
  };
  std::string out = "  " + clockText(pass.rise.time, calendar) + right(pass.rise.azimuth, 6) + "  up " +
                    timeText(pass.culmination.time, calendar) + right(pass.culmination.elevation, 5) +
                    " high  " + timeText(pass.set.time, calendar) + right(pass.set.azimuth, 6) + " down  " +
                    (pass.sunlit ? "sunlit" : "in shadow") + (pass.skyDark ? ", dark sky" : ", bright sky");
  if (pass.visible) {
    out += ", visible " + timeText(pass.visible->from, calendar) + "-" + timeText(pass.visible->to, calendar);
  }
  if (cloudCover) out += ", clouds " + std::to_string(*cloudCover) + " %";
  return out + "\n";
}

std::string table(std::vector<ListedPass> const& passes, Calendar const& calendar) {
  if (passes.empty()) return "no passes\n";
  std::string out = passes.front().name + "\n";
  for (ListedPass const& pass : passes) out += rowText(pass, calendar);
  return out;
}

}  // namespace

Result<std::string, Failure> satellitePassesAnswer(SatelliteSource& source,
                                                   SatellitesOptions const& options) {
  RunContext& context = source.context();
  Session const& session = source.session();
  auto const place = context.place(options.place);
  if (!place) return std::unexpected(place.error());
  auto const found =
      source.find(options.satellite.empty() ? kDefaultSatellite : std::string_view(options.satellite));
  if (!found) return std::unexpected(found.error());
  auto const forecast = context.app().forecasts().get(*place, WeatherProviderOption::automatic, session.stop);
  if (!forecast) context.tell("without cloud cover: " + context.sentenceOf(forecast.error()));
  WeatherData const* const data = forecast ? &forecast->data : nullptr;
  Instant const now = source.now();
  std::vector<ListedPass> listed;
  for (auto const& pass : satellitePasses(found->entry.satrec, place->coordinate, now,
                                          now + std::chrono::days(options.days), options.above)) {
    if (options.visible && !pass.visible) continue;
    listed.push_back({found->entry.name, rounded(pass), cloudCoverAt(data, pass.culmination.time)});
  }
  if (options.json) return json(listed);
  return table(listed, data != nullptr ? calendarOf(*data, session.environment.machineCalendar)
                                       : session.environment.machineCalendar);
}

}  // namespace nimbara
