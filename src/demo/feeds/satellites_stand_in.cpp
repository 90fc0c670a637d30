#include "demo/feeds/satellites_stand_in.h"

#include "base/json/json.h"
#include "demo/world/demo_satellites.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

std::string degrees(double radians) {
  return fmt::format("{:.4f}", radians * 180 / std::numbers::pi);
}

/// "2026-11-21T04:00:00.000000", UTC.
std::string epochText(SGP4::TLE const& tle) {
  auto const midnight = std::chrono::floor<std::chrono::days>(tle.epoch);
  auto const ofDay = std::chrono::milliseconds(std::llround(tle.epochFraction * 86'400'000));
  std::string const whole = formatIso8601(midnight + ofDay);
  return whole.substr(0, whole.find_first_of(".Z")) + fmt::format(".{:03}000", ofDay.count() % 1000);
}

std::string designator(SGP4::TLE const& tle) {
  return tle.intldesg.size() < 5 ? "" : "20" + tle.intldesg.substr(0, 2) + "-" + tle.intldesg.substr(2);
}

/// A column of the elements as CelesTrak publishes them.
struct Column {
  std::string_view name;
  bool isText;
  std::string (*value)(SGP4::TLE const&);
};

constexpr Column kColumns[] = {
    {"OBJECT_NAME", true, [](SGP4::TLE const& tle) { return tle.name; }},
    {"OBJECT_ID", true, designator},
    {"EPOCH", true, epochText},
    {"MEAN_MOTION", false,
     [](SGP4::TLE const& tle) { return fmt::format("{:.8f}", tle.no_kozai * 720 / std::numbers::pi); }},
    {"ECCENTRICITY", false, [](SGP4::TLE const& tle) { return fmt::format("{:.7f}", tle.ecco); }},
    {"INCLINATION", false, [](SGP4::TLE const& tle) { return degrees(tle.inclo); }},
    {"RA_OF_ASC_NODE", false, [](SGP4::TLE const& tle) { return degrees(tle.nodeo); }},
    {"ARG_OF_PERICENTER", false, [](SGP4::TLE const& tle) { return degrees(tle.argpo); }},
    {"MEAN_ANOMALY", false, [](SGP4::TLE const& tle) { return degrees(tle.mo); }},
    {"EPHEMERIS_TYPE", false, [](SGP4::TLE const&) { return std::string("0"); }},
    {"CLASSIFICATION_TYPE", true, [](SGP4::TLE const&) { return std::string("U"); }},
    {"NORAD_CAT_ID", false, [](SGP4::TLE const& tle) { return std::to_string(tle.satnum); }},
    {"ELEMENT_SET_NO", false, [](SGP4::TLE const&) { return std::string("999"); }},
    {"REV_AT_EPOCH", false, [](SGP4::TLE const&) { return std::string("0"); }},
    {"BSTAR", false, [](SGP4::TLE const& tle) { return fmt::format("{}", tle.bstar); }},
    {"MEAN_MOTION_DOT", false, [](SGP4::TLE const& tle) { return fmt::format("{}", tle.ndot); }},
    {"MEAN_MOTION_DDOT", false, [](SGP4::TLE const& tle) { return fmt::format("{}", tle.nddot); }}};

std::string commaSeparated(std::vector<SGP4::TLE> const& satellites) {
  std::string text;
  for (Column const& column : kColumns) text += (text.empty() ? "" : ",") + std::string(column.name);
  text += "\r\n";
  for (SGP4::TLE const& tle : satellites) {
    for (Column const& column : kColumns) text += (&column == kColumns ? "" : ",") + column.value(tle);
    text += "\r\n";
  }
  return text;
}

std::string jsonObject(SGP4::TLE const& tle) {
  std::string text = "{";
  for (Column const& column : kColumns) {
    std::string const value = column.value(tle);
    text += (&column == kColumns ? "\"" : ",\"") + std::string(column.name) + "\":";
    text += column.isText ? encodeJson(value) : value;
  }
  return text + "}";
}

std::string jsonList(std::vector<SGP4::TLE> const& satellites) {
  std::string text = "[";
  for (SGP4::TLE const& tle : satellites) text += (text.size() > 1 ? "," : "") + jsonObject(tle);
  return text + "]";
}

std::string elementLines(std::vector<SGP4::TLE> const& satellites, int largestNumber) {
  std::string text;
  for (SGP4::TLE const& tle : satellites) {
    if (tle.satnum <= largestNumber) text += SGP4::writeElements(tle).value_or("");
  }
  return text;
}

/// CelesTrak's lines hold no number of more than five digits; who asks for them never hears of the others.
std::string publishedLines(std::vector<SGP4::TLE> const& satellites) {
  return elementLines(satellites, 99'999);
}

struct Format {
  std::string_view name;
  std::string (*write)(std::vector<SGP4::TLE> const&);
};

constexpr Format kFormats[] = {{"CSV", commaSeparated}, {"JSON", jsonList}, {"TLE", publishedLines}};

/// In the service's manner: an error is a text under 200.
DemoAnswer invalidQuery(std::string_view what) {
  return {200, "Invalid query: \"" + std::string(what) + "\"\n", {}};
}

}  // namespace

DemoAnswer satelliteFeed(DemoRequest const& request, Instant now) {
  constexpr int kLargestInAlphaFive = 339'999;
  auto const satellites = demoSatellites(request.query("p"), now);
  if (!satellites) return {404, "No such group\n", {}};
  return {200, elementLines(*satellites, kLargestInAlphaFive), {}};
}

DemoAnswer celestrakElements(DemoRequest const& request, Instant now) {
  std::string const asked = request.query("FORMAT");
  auto const format = std::ranges::find(kFormats, asked.empty() ? "CSV" : asked, &Format::name);
  if (format == std::ranges::end(kFormats)) return invalidQuery("FORMAT=" + asked);
  auto const satellites = demoSatellites(request.query("GROUP"), now);
  return satellites ? DemoAnswer{200, format->write(*satellites), {}}
                    : invalidQuery("GROUP=" + request.query("GROUP"));
}

}  // namespace nimbara
