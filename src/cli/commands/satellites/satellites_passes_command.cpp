#include "app/services/forecast_service.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "cli/commands/satellites/satellite_source.h"
#include "cli/commands/satellites/satellites_commands.h"
#include "cli/pages/satellites_text.h"
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

/// "18:03:20", or "6:03:20 PM", in a column.
std::string clockText(Instant instant, TimeWords const& words) {
  int const width = displayWidth(words.clockWithSeconds(Instant(std::chrono::hours(22))));
  return fitted(words.clockWithSeconds(instant), width, Align::right);
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

std::string rowText(ListedPass const& listed, TimeWords const& words) {
  auto const& [name, pass, cloudCover] = listed;
  auto const right = [](double degrees, int width) {
    return fitted(angleText(degrees, 0), width, Align::right);
  };
  std::string out = "  " + words.format(pass.rise.time, "yyyy-MM-dd ") + clockText(pass.rise.time, words) +
                    right(pass.rise.azimuth, 6) + "  up " + clockText(pass.culmination.time, words) +
                    right(pass.culmination.elevation, 5) + " high  " + clockText(pass.set.time, words) +
                    right(pass.set.azimuth, 6) + " down  " + (pass.sunlit ? "sunlit" : "in shadow") +
                    (pass.skyDark ? ", dark sky" : ", bright sky");
  if (pass.visible) {
    out += ", visible " + words.clockWithSeconds(pass.visible->from) + "-" +
           words.clockWithSeconds(pass.visible->to);
  }
  if (cloudCover) out += ", clouds " + std::to_string(*cloudCover) + " %";
  return out + "\n";
}

std::string table(std::vector<ListedPass> const& passes, TimeWords const& words) {
  if (passes.empty()) return "no passes\n";
  std::string out = passes.front().name + "\n";
  for (ListedPass const& pass : passes) out += rowText(pass, words);
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
  Calendar const& machine = session.environment.machineCalendar;
  return table(listed, TimeWords(context.texts(), data != nullptr ? calendarOf(*data, machine) : machine));
}

}  // namespace nimbara
