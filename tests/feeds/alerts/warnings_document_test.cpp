// docs/warnings-by-country.md is written from the tables by which the program chooses its sources.

#include "base/words/country_names.h"
#include "base/words/texts.h"
#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/warning_route.h"
#include "feeds/regions/meteo_alarm_countries.h"
#include "feeds/wmo/wmo_sources.h"
#include "gazetteer/gazetteer.h"
#include "support/paths.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace nimbara {
namespace {

using Names = std::vector<std::string_view>;

std::filesystem::path const kDocument =
    std::filesystem::path(test::kFixtures).parent_path().parent_path() / "docs" / "warnings-by-country.md";

/// What the document says that a source gives, in full and for the row of a country. What it does not give is
/// in full the program's own text.
struct Gives {
  std::string_view source, texts, areas, changes, inShort, notInShort;
};

constexpr Gives kGives[] = {
    {"nws", "Full text in English", "Forecast zones, counties and waters by name",
     "Updates and cancellations", "English texts, zones, changes", "other languages"},
    {"meteoalarm", "Full text in the country's languages, often also in English",
     "Warning regions, drawn or by their codes", "Updates; a cancelled warning is no longer listed",
     "texts of the country, regions, changes", "regions whose outline is not known"},
    {"eccc", "Full text in English and French", "Forecast zones, drawn",
     "Updates; an alert that ended early is no longer listed",
     "English and French texts, drawn zones, changes", "other languages"},
    {"metalerts", "Full text in Norwegian or English", "Land and sea areas, drawn",
     "Updates; a warning that ended early is no longer listed",
     "Norwegian or English texts, drawn areas, changes", "other languages"},
    {"wmo", "Full text in the languages of the issuing service",
     "Areas drawn by the issuing service or the centre, or a whole country",
     "Updates and cancellations, as far as the issuing service sends them",
     "texts of the issuing service, areas, changes", "the place of a warning without an area"},
    {"fpas", "Full text in the languages of the issuing service",
     "Areas drawn by the issuing service, or by the server from their codes",
     "Updates and cancellations, as far as the issuing service sends them",
     "texts of the issuing service, areas, changes", "areas in mainland China"},
    {"brightsky", "Full text in German and English", "The municipality of the place",
     "A warning that ended early is no longer listed", "German and English texts, the municipality",
     "the outline of an area"},
};

Gives const& givesOf(std::string_view source) {
  return *std::ranges::find(kGives, source, &Gives::source);
}

std::string cellsOf(std::initializer_list<std::string> cells) {
  std::string row;
  for (std::string const& cell : cells) row += "| " + (cell.empty() ? std::string("–") : cell) + " ";
  return row + "|\n";
}

std::string listed(std::span<std::string_view const> names) {
  std::string text;
  for (std::string_view const name : names) text.append(text.empty() ? "" : ", ").append(name);
  return text;
}

std::string lacksOf(OfficialSource const& source, Texts const& texts) {
  std::string sentence;
  for (std::string_view const key : source.lacks) {
    if (!key.empty()) sentence.append(sentence.empty() ? "" : ". ").append(texts.text(key));
  }
  return sentence;
}

std::string sourcesTable(Texts const& texts) {
  std::string table =
      "| name | source | texts | areas | changes | asked at most | does not give "
      "|\n|---|---|---|---|---|---|---|\n";
  for (OfficialSource const& source : officialSources()) {
    if (std::ranges::count(kGives, source.name, &Gives::source) == 0) continue;
    Gives const& gives = givesOf(source.name);
    table += cellsOf({std::string(source.name), std::string(source.service), std::string(gives.texts),
                      std::string(gives.areas), std::string(gives.changes),
                      std::to_string(source.rest.count()) + " min", lacksOf(source, texts)});
  }
  return table;
}

struct Country {
  std::string code;
  Coordinate city;
};

/// By English name: every country that a city is in, and the one that has a rule without a city.
std::map<std::string, Country> countries() {
  std::map<std::string, Country> byCode{{"SJ", {"SJ", {78.22, 15.65}}}};
  for (City const& city : allCities()) {
    std::string code(city.countryCode);
    byCode.try_emplace(code, Country{code, city.coordinate});
  }
  std::map<std::string, Country> byName;
  for (auto const& [code, country] : byCode) byName.emplace(countryName(code, "en"), country);
  return byName;
}

bool isKnownToTakePart(std::string_view country) {
  auto const members = builtInWmoCountries();
  return std::ranges::find(members, country) != members.end();
}

std::string countriesTable() {
  std::string table =
      "| country | code | asked first | if that fails | you may choose | gives | does not give |\n"
      "|---|---|---|---|---|---|---|\n";
  for (auto const& [name, country] : countries()) {
    GovAlertPlace const place{country.city, country.code, {}, {}};
    Names const route = warningRoute(place);
    Names const possible = possibleSources(place);
    Gives const& gives = givesOf(route.front());
    bool const isUnknown = route.front() == "wmo" && !isKnownToTakePart(country.code);
    table +=
        cellsOf({name, country.code, std::string(route.front()), listed(std::span(route).subspan(1)),
                 listed(std::span(possible).subspan(1)), isUnknown ? "" : std::string(gives.inShort),
                 isUnknown ? "no issuing service is known to take part" : std::string(gives.notInShort)});
  }
  return table;
}

/// The table that begins with `head`, in place of which `table` is written where that is wanted.
void expectTable(std::string_view head, std::string const& table) {
  std::ostringstream content;
  content << std::ifstream(kDocument).rdbuf();
  std::string text = content.str();
  auto const begin = text.find(head);
  ASSERT_NE(begin, std::string::npos) << head;
  auto const end = std::min(text.find("\n\n", begin), text.size() - 1) + 1;
  std::string const found = text.substr(begin, end - begin);
  if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr)
    std::ofstream(kDocument) << text.replace(begin, end - begin, table);
  EXPECT_EQ(found, table);
}

/// NIMBARA_UPDATE_SNAPSHOTS=1 writes the tables anew.
TEST(WarningsDocument, ListsTheSourcesAsTheirRowsSay) {
  for (OfficialSource const& source : officialSources())
    EXPECT_EQ(std::ranges::count(kGives, source.name, &Gives::source), 1) << source.name;
  expectTable("| name |", sourcesTable(Texts::load("en")));
}

TEST(WarningsDocument, ListsEveryCountryAsItIsRouted) {
  expectTable("| country |", countriesTable());
}

}  // namespace
}  // namespace nimbara
