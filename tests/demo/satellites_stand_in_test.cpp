#include "demo/feeds/satellites_stand_in.h"

#include "demo/feeds/feed_server_stand_in.h"
#include "feeds/space/element_text.h"
#include "globe/satellite_catalog.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace nimbara {
namespace {

using test::at;

DemoAnswer ask(std::map<std::string, std::string, std::less<>> const& query, std::string const& now) {
  DemoRequest request;
  request.query = [&](std::string_view name) {
    auto const found = query.find(name);
    return found == query.end() ? std::string() : found->second;
  };
  return feedServerFeed(request, at(now));
}

TEST(SatellitesStandIn, ServesSoundElementsForEveryGroup) {
  std::set<int> numbers;
  std::size_t total = 0;
  for (auto const& group : SatelliteCatalog::groups()) {
    auto const answer = ask({{"f", "satellites"}, {"p", std::string(group.id)}}, "2026-11-21T09:20:00Z");
    EXPECT_EQ(answer.status, 200);
    auto const parsed = SatelliteCatalog::parse(answer.body, group);
    EXPECT_EQ(parsed.dropped, 0U) << group.id;
    EXPECT_FALSE(parsed.entries.empty()) << group.id;
    total += parsed.entries.size();
    for (auto const& entry : parsed.entries) {
      numbers.insert(entry.satrec.tle.satnum);
      auto const age = at("2026-11-21T09:20:00Z") - entry.satrec.tle.epoch;
      EXPECT_TRUE(age > std::chrono::hours(0) && age < std::chrono::hours(24)) << entry.name;
      int const later = SGP4::propagate(entry.satrec, 7 * 1440).error;
      EXPECT_EQ(later, SGP4::errorCode::kNone) << entry.name;
    }
  }
  EXPECT_EQ(numbers.size(), total) << "numbers are told apart";
  EXPECT_GT(total, 11'000U);
  EXPECT_GT(*numbers.rbegin(), 99'999);
}

TEST(SatellitesStandIn, GroupsHoldTheKindsThatTheyAreNamedFor) {
  std::pair<std::string, SatelliteCatalog::Kind> const rows[] = {
      {"stations", SatelliteCatalog::Kind::iss},  {"starlink", SatelliteCatalog::Kind::starlink},
      {"oneweb", SatelliteCatalog::Kind::oneweb}, {"weather", SatelliteCatalog::Kind::geo},
      {"galileo", SatelliteCatalog::Kind::gps},   {"glo-ops", SatelliteCatalog::Kind::gps}};
  for (auto const& [id, kind] : rows) {
    auto const body = ask({{"f", "satellites"}, {"p", id}}, "2056-02-29T00:00:00Z").body;
    auto const parsed = SatelliteCatalog::parse(body, *SatelliteCatalog::group(id));
    EXPECT_GT(std::ranges::count(parsed.entries, kind, &SatelliteCatalog::Entry::kind), 0) << id;
  }
}

TEST(SatellitesStandIn, RefusesOtherGroupsAndFeeds) {
  EXPECT_EQ(ask({{"f", "satellites"}, {"p", "noaa"}}, "2026-11-21T09:20:00Z").status, 404);
  EXPECT_EQ(ask({{"f", "nothing"}}, "2026-11-21T09:20:00Z").status, 400);
  EXPECT_EQ(ask({}, "2026-11-21T09:20:00Z").status, 400);
}

DemoAnswer askCelestrak(std::string const& group, std::string const& format) {
  DemoRequest request;
  request.query = [&](std::string_view name) { return name == "GROUP" ? group : format; };
  return celestrakElements(request, at("2026-11-21T09:20:00Z"));
}

/// What the feed server makes of its source is what the demo's own feed server says.
TEST(CelestrakStandIn, GivesTheFeedServerWhatItServes) {
  for (auto const& group : SatelliteCatalog::groups()) {
    std::string const id(group.id);
    auto const table = elementText(askCelestrak(id, "CSV").body);
    ASSERT_TRUE(table) << table.error();
    EXPECT_EQ(table->leftOut, 0) << id;
    auto const made = SatelliteCatalog::parse(table->text, group);
    auto const served =
        SatelliteCatalog::parse(ask({{"f", "satellites"}, {"p", id}}, "2026-11-21T09:20:00Z").body, group);
    EXPECT_EQ(made.dropped, 0) << id;
    ASSERT_EQ(made.entries.size(), served.entries.size()) << id;
    for (std::size_t i = 0; i < made.entries.size(); ++i) {
      EXPECT_EQ(made.entries[i].satrec.tle, served.entries[i].satrec.tle) << made.entries[i].name;
    }
  }
}

TEST(CelestrakStandIn, LeavesNumbersOfSixDigitsOutOfItsLinesOnly) {
  auto const numbersIn = [](std::string const& body, std::string_view start) {
    std::size_t count = 0;
    for (std::size_t found = body.find(start); found != std::string::npos;
         found = body.find(start, found + 1))
      ++count;
    return count;
  };
  EXPECT_EQ(numbersIn(askCelestrak("starlink", "CSV").body, "\r\n"), 9001);
  EXPECT_EQ(numbersIn(askCelestrak("starlink", "JSON").body, "\"NORAD_CAT_ID\":"), 9000);
  EXPECT_EQ(numbersIn(askCelestrak("starlink", "JSON").body, "\"NORAD_CAT_ID\":1000"), 90);
  EXPECT_EQ(numbersIn(askCelestrak("starlink", "TLE").body, "\n1 "), 8400);
  EXPECT_EQ(askCelestrak("starlink", "").body, askCelestrak("starlink", "CSV").body);
}

TEST(CelestrakStandIn, ErrorsAreTextsUnderSuccess) {
  for (auto const& [group, format] : {std::pair("noaa", "CSV"), {"weather", "PDF"}}) {
    auto const answer = askCelestrak(group, format);
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.body.starts_with("Invalid query")) << answer.body;
  }
}

}  // namespace
}  // namespace nimbara
