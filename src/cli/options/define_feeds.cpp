#include "base/text/number.h"
#include "base/text/text.h"
#include "cli/options/command_definitions.h"

#include <cmath>

namespace nimbara {

namespace {

constexpr char kJson[] = "One JSON document instead of text";

/// Ranges let through what is no number.
std::string number(std::string const& text) {
  auto const value = parseDouble(text);
  return value && std::isfinite(*value) ? "" : "'" + oneLine(text) + "' is not a number";
}

void defineNws(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("nws", "Active alerts for a place from the U.S. National Weather Service");
  FeedOptions& options = line.feeds;
  command->add_option("PLACE", options.place, "LAT,LON in decimal degrees, or a name to search for");
  command->add_option("--view", options.view, "all, convective or flood")
      ->check(CLI::IsMember({"all", "convective", "flood"}));
  command->add_option("--country", options.country, "The country the place is in")
      ->type_name("CC")
      ->check(countryCodeProblem);
  command->add_flag("--json", options.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runNws; });
}

void defineQuakes(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("quakes", "The earthquakes of the last 24 hours, newest first");
  FeedOptions& options = line.feeds;
  auto* const near =
      command->add_option("--near", options.place, "Only earthquakes near this place")->type_name("PLACE");
  command->add_option("--radius", options.radiusKm, "Distance from the place")
      ->type_name("KM")
      ->check(number)
      ->check(CLI::Range(0.0, 20100.0))
      ->needs(near);
  command->add_option("--min-magnitude", options.minMagnitude, "Minimum magnitude")
      ->type_name("M")
      ->check(number)
      ->check(CLI::Range(-10.0, 12.0));
  command->add_flag("--json", options.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line, near] {
    line.run = runQuakes;
    line.feeds.isNear = near->count() > 0;
  });
}

void defineKp(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command =
      app.add_subcommand("kp", "The planetary K index, a measure of geomagnetic activity");
  command->add_flag("--json", line.feeds.json, kJson);
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runKp; });
}

void defineFeedServer(CLI::App& app, CommandLine& line, RawOptions& raw) {
  CLI::App* const command = app.add_subcommand(
      "feed-server", "Serve earthquakes and satellite orbits from the public sources to many programs");
  command->add_option("--listen", line.feeds.listen, "Address to listen on; port 0 picks a free one")
      ->capture_default_str()
      ->type_name("ADDR:PORT");
  defineCommon(*command, line, raw);
  command->callback([&line] { line.run = runFeedServer; });
}

}  // namespace

std::string countryCodeProblem(std::string const& text) {
  bool const isCode = text.size() == 2 &&
                      asciiUppered(text).find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  return isCode ? "" : "'" + oneLine(text) + "' is not a country code; use one like US";
}

void defineFeeds(CLI::App& app, CommandLine& line, RawOptions& raw) {
  defineNws(app, line, raw);
  defineQuakes(app, line, raw);
  defineKp(app, line, raw);
  defineFeedServer(app, line, raw);
}

}  // namespace nimbara
