#include "cli/commands/warnings/regions_command.h"

#include "app/settings/service_directory.h"
#include "base/files/file.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/words/country_names.h"
#include "cli/cli.h"
#include "cli/pages/warnings/region_table.h"
#include "cli/run_context.h"
#include "cli/slow_note.h"
#include "feeds/regions/region_update.h"
#include "feeds/regions/regions.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kLongestDocument = std::size_t{128} << 20;

std::string joined(std::vector<std::string> const& parts) {
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text.empty() ? "-" : text;
}

std::vector<std::string> codeTexts(PlaceRegions const& regions, bool atSea) {
  std::vector<std::string> texts;
  for (RegionCode const& code : regions.codes) {
    bool const isSea = std::ranges::find(regions.seaCodes, code) != regions.seaCodes.end();
    if (isSea == atSea) texts.push_back(code.code + " (" + code.registry + ")");
  }
  return texts;
}

/// A name that was looked up may have meant another place.
std::string report(Place const& place, PlaceRegions const& regions, std::string const& language) {
  std::string const country =
      regions.country.empty() ? "-" : countryName(regions.country, language) + " (" + regions.country + ")";
  std::string name = place.name;
  for (std::string const& part : {place.region, place.country}) {
    if (!name.empty() && !part.empty() && part != place.name) name += ", " + part;
  }
  return (name.empty() ? name : "Place    " + oneLine(name) + "\n") + "Country  " + country + "\nNames    " +
         joined(regions.names) + "\nLand     " + joined(codeTexts(regions, false)) + "\nSea      " +
         joined(codeTexts(regions, true)) + "\n";
}

std::string json(RegionUpdate const& update) {
  JsonWriter writer;
  writer.beginObject();
  writer.member("regions", update.regions);
  writer.key("countries");
  writer.beginObject();
  for (auto const& [country, count] : update.byCountry) writer.member(country, count);
  writer.endObject();
  writer.member("skipped", update.skipped);
  writer.member("bytes", update.fileBytes);
  writer.member("edition", update.edition);
  writer.endObject();
  return writer.take() + "\n";
}

std::string report(RegionUpdate const& update) {
  std::string text = std::to_string(update.regions) + " regions of " +
                     std::to_string(update.byCountry.size()) +
                     (update.byCountry.size() == 1 ? " country:" : " countries:");
  char const* separator = " ";
  for (auto const& [country, count] : update.byCountry) {
    text += separator + (country.empty() ? "?" : country) + " " + std::to_string(count);
    separator = ", ";
  }
  if (update.skipped > 0) text += "; " + std::to_string(update.skipped) + " without a usable outline";
  return text + "\n";
}

/// One run of the command.
class RegionsRun {
 public:
  RegionsRun(CommandLine const& line, Session const& session)
      : options_(line.regions),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, line.forecast.provider)),
        file_(regionFileIn(session.environment.dataDirectory)) {}

  int show() {
    auto const place = context_.place(options_.place);
    if (!place) return session_.fail(place.error().exitCode, place.error().sentence);
    Regions const known(file_);
    PlaceRegions const regions = known.at(place->coordinate);
    if (auto const problem = known.problem())
      session_.fail(exitCode::kUnavailable, *problem + "; download it again with: nimbara regions update");
    std::string const text = report(*place, regions, context_.texts().language());
    session_.console.out(options_.json               ? encodeJson(regions) + "\n"
                         : session_.environment.utf8 ? text
                                                     : asciiFolded(text));
    return exitCode::kComplete;
  }

  /// A line for each place of a table, and a last one that counts; 1 when any place is wrong.
  int check() {
    auto const text = readFile(options_.table, kLongestDocument);
    if (!text) return session_.fail(exitCode::kUnavailable, text.error());
    auto const rows = readRegionTable(*text);
    if (!rows) return session_.fail(exitCode::kUnavailable, options_.table + ": " + rows.error());
    Regions const known(file_);
    std::size_t right = 0;
    for (RegionTableRow const& row : *rows) {
      std::string const expected = describe(row);
      std::string const got = describe(foundRow(row, known));
      bool const isRight = got == expected;
      right += isRight ? 1 : 0;
      session_.console.out((isRight ? "ok     " : "WRONG  ") + row.place + "  expected: " + expected +
                           "  got: " + got + "\n");
    }
    session_.console.out(std::to_string(right) + " of " + std::to_string(rows->size()) + " places right\n");
    return right == rows->size() ? exitCode::kComplete : exitCode::kUnavailable;
  }

  int update() {
    auto const done = options_.files.empty() ? fetched() : read();
    if (!done) {
      bool const interrupted = session_.stop.stop_requested();
      return interrupted
                 ? session_.fail(exitCode::kInterrupted, "interrupted")
                 : session_.fail(exitCode::kUnavailable, done.error() + "; the regions are unchanged");
    }
    session_.console.out(options_.json ? json(*done) : report(*done));
    return exitCode::kComplete;
  }

 private:
  Result<RegionUpdate, std::string> fetched() {
    SlowNote const note(session_, "downloading the outlines of warning regions …");
    std::string const base = context_.app().services().address(Service::meteoAlarmRegions).baseUrl;
    return updateRegions(context_.app().http(), base, file_, {embeddedRegions().get(), {}}, session_.stop);
  }

  Result<RegionUpdate, std::string> read() const {
    SlowNote const note(session_, "reading the outlines of warning regions …");
    std::vector<std::string> documents;
    for (std::string const& name : options_.files) {
      auto document = readFile(name, kLongestDocument);
      if (!document) return std::unexpected(document.error());
      documents.push_back(std::move(*document));
    }
    return installRegions({documents.begin(), documents.end()}, file_, embeddedRegions().get());
  }

  RegionsOptions const& options_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  std::filesystem::path file_;
};

}  // namespace

int runRegions(CommandLine const& line, Session const& session) {
  RegionsRun run(line, session);
  switch (line.regions.action) {
    case RegionsOptions::Action::update:
      return run.update();
    case RegionsOptions::Action::check:
      return run.check();
    default:
      return run.show();
  }
}

}  // namespace nimbara
