#include "demo/feeds/warnings/fpas_stand_in.h"
#include "demo/feeds/warnings/wmo_stand_in.h"
#include "demo/world/warnings/demo_cap.h"
#include "feeds/cap/cap_reader.h"
#include "gazetteer/gazetteer.h"
#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using testing::HasSubstr;
using testing::Not;

using Query = std::map<std::string, std::string, std::less<>>;

DemoRequest asked(std::string path, Query query = {}) {
  DemoRequest request;
  request.path = std::move(path);
  request.query = [query = std::move(query)](std::string_view name) {
    auto const found = query.find(name);
    return found == query.end() ? std::string() : found->second;
  };
  request.header = [](std::string_view) { return std::string(); };
  return request;
}

std::vector<DemoWorldMessage> messagesOf(DemoIssuer const& issuer, Instant now) {
  return demoWorldMessages(issuer, demoWarnedTile(issuer, issuer.place), now);
}

TEST(DemoWorld, HasATownOfEachCountryInIt) {
  std::set<std::string_view> countries;
  for (DemoIssuer const& issuer : demoIssuers()) {
    EXPECT_EQ(describePlace(issuer.place).countryCode, issuer.countryCode) << issuer.town;
    countries.insert(issuer.countryCode);
  }
  EXPECT_EQ(countries.size(), 40);
}

/// Three days of each issuer, every other hour.
TEST(DemoWorld, WarnsWithoutAPauseOrNever) {
  for (DemoIssuer const& issuer : demoIssuers()) {
    if (issuer.temper == DemoTemper::weather) continue;
    for (Instant now = at("2026-11-20T00:10:00Z"); now < at("2026-11-23T00:00:00Z"); now += 2h) {
      std::size_t inForce = 0;
      for (auto const& message : messagesOf(issuer, now)) {
        DemoStep const step = message.about();
        inForce += !message.event.isDrill && !step.isOver && step.end > now ? 1 : 0;
      }
      EXPECT_EQ(inForce > 0, issuer.temper == DemoTemper::always)
          << issuer.country << " at " << formatIso8601(now);
    }
  }
}

TEST(DemoWorld, WritesMessagesThatCanBeReadAndFoundAgain) {
  for (DemoIssuer const& issuer : demoIssuers()) {
    for (Instant now = at("2026-11-20T00:10:00Z"); now < at("2026-11-23T00:00:00Z"); now += 5h) {
      for (auto const& message : messagesOf(issuer, now)) {
        auto const again = demoMessageOf(message.code());
        ASSERT_TRUE(again);
        EXPECT_EQ(again->event, message.event);
        auto const alert = parseCap(demoCapDocument(message));
        ASSERT_TRUE(alert) << alert.error();
        EXPECT_EQ(alert->identifier, message.identifier());
        EXPECT_EQ(alert->sent, message.about().sent) << issuer.country;
        EXPECT_EQ(alert->infos.at(0).expires, message.about().end) << issuer.country;
        EXPECT_EQ(alert->infos.at(0).onset, message.event.begin);
        EXPECT_EQ(alert->references.size(), message.step + (issuer.has(kNamesItself) ? 1 : 0));
      }
    }
  }
}

struct HabitRow {
  std::string_view country;
  std::vector<std::string> written;
  std::vector<std::string> absent;
};

void PrintTo(HabitRow const& row, std::ostream* out) {
  *out << row.country;
}

struct Habits : testing::TestWithParam<HabitRow> {};

TEST_P(Habits, ShowInTheMessages) {
  HabitRow const& row = GetParam();
  std::string documents;
  for (Instant now = at("2026-11-20T00:10:00Z"); now < at("2026-11-22T00:00:00Z"); now += 1h) {
    for (auto const& message : messagesOf(*demoIssuerOf(row.country), now))
      documents += demoCapDocument(message);
  }
  for (std::string const& text : row.written) EXPECT_NE(documents.find(text), documents.npos) << text;
  for (std::string const& text : row.absent) EXPECT_EQ(documents.find(text), documents.npos) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Habits,
    testing::Values(HabitRow{"TH", {"<sent>2569-", "+07:00"}, {"2026-"}},
                    HabitRow{"KZ", {"-00:00", "-EN<", "-KK<"}, {"+0"}},
                    HabitRow{"PH", {"<cap:polygon/>", "<cap:geocode>"}, {"<info>", "<polygon"}},
                    HabitRow{"CN", {"<geocode>", "<msgType>Cancel<"}, {"polygon", "<language>en"}},
                    HabitRow{"PE", {"<cap:areaDesc>Peru<"}, {"polygon", "geocode"}},
                    HabitRow{"RU", {",180.000 ", ",-180.000 ", "<msgType>Update<"}, {",181"}},
                    HabitRow{"FJ", {",180.000 ", ",-180.000 ", "<status>Test<"}, {",181"}},
                    HabitRow{"MO", {"\n\t\t\t", ">AllClear<", ">Past<"}, {}},
                    HabitRow{"JP", {">Past<", "<msgType>Update<"}, {">AllClear<", ">Cancel<"}},
                    HabitRow{"IN", {"<altitude>0<", "<ceiling>0<", "+05:30"}, {}},
                    HabitRow{"ID", {"<SignatureValue>"}, {}}, HabitRow{"SA", {"<circle>"}, {"<polygon>"}},
                    HabitRow{"AU", {"<description/>"}, {}},
                    HabitRow{"ZA", {"<severity>Unknown<"}, {"<severity>S"}},
                    HabitRow{"BR", {"awareness_level"}, {"<language>en"}}),
    [](auto const& row) { return std::string(row.param.country); });

Query point(std::string_view text) {
  return {{"request", "GetFeature"},
          {"cql_filter",
           "INTERSECTS(wkb_geometry, POINT (" + std::string(text) + ")) AND row_type NEQ 'BOUNDARY'"}};
}

TEST(WmoStandIn, AnswersWhateverIsWrongWithStatus200) {
  Instant const now = at("2026-11-21T09:20:00Z");
  for (Query const& query : {Query{}, Query{{"request", "GetFeature"}, {"cql_filter", "POINT 1 2"}},
                             point("100.50 13.75 "), point("-18.91 47.54")}) {
    DemoAnswer const answer = wmoPointQuery(asked("/f/wfs", query), now);
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.body, HasSubstr("ExceptionReport"));
  }
  DemoAnswer const paged =
      wmoWarningList(asked("/g/wfs", {{"request", "GetFeature"}, {"startIndex", "10"}}), now);
  EXPECT_THAT(paged.body, testing::StartsWith("Err"));
}

TEST(WmoStandIn, NumbersItsRowsAnewInEachAnswer) {
  auto const idOf = [](std::string const& moment) {
    std::string const body = wmoPointQuery(asked("/f/wfs", point("13.75 100.50")), at(moment)).body;
    auto const begin = body.find("\"id\":");
    return body.substr(begin, body.find(',', begin) - begin);
  };
  EXPECT_NE(idOf("2026-11-21T09:20:00Z"), idOf("2026-11-21T09:20:01Z"));
}

TEST(WmoStandIn, ListsForTheCountryWhatNoPointFinds) {
  Instant const now = at("2026-11-21T09:20:00Z");
  EXPECT_THAT(wmoPointQuery(asked("/f/wfs", point("6.45 3.39")), now).body, HasSubstr("\"features\":[]"));
  auto const listed = [&](std::string const& filter) {
    return wmoWarningList(asked("/g/wfs", {{"request", "GetFeature"}, {"cql_filter", filter}}), now).body;
  };
  EXPECT_THAT(listed("mem='036'"), HasSubstr("ng-demo-en/"));
  EXPECT_THAT(listed("mem='036'"), Not(HasSubstr("th-demo")));
  EXPECT_THAT(listed(""), HasSubstr("th-demo-xx/"));
  auto const typeOf = [&](std::string_view country) {
    std::string const filter = "capurl IN ('" + messagesOf(*demoIssuerOf(country), now).at(0).file() + "')";
    return wmoPointQuery(asked("/f/wfs", {{"request", "GetFeature"}, {"cql_filter", filter}}), now).body;
  };
  EXPECT_THAT(typeOf("NG"), HasSubstr(R"("row_type":"POINT")"));
  EXPECT_THAT(typeOf("PH"), HasSubstr(R"("row_type":"POLYGON")"));
}

TEST(FpasStandIn, LeadsToTheSameMessageAsTheCentre) {
  Instant const now = at("2026-11-21T09:20:00Z");
  auto const box = [](std::string south, std::string north) {
    return Query{{"min_lat", south}, {"max_lat", north}, {"min_lon", "36.819"}, {"max_lon", "36.821"}};
  };
  DemoAnswer const empty = fpasArea(asked("/alert/area", box("-1.28", "-1.28")), now);
  EXPECT_EQ(empty.status, 400);
  EXPECT_EQ(empty.body, "invalid bounding box");
  std::string const found = fpasArea(asked("/alert/area", box("-1.281", "-1.279")), now).body;
  constexpr std::size_t kUuid = 36;
  DemoAnswer const there = fpasAlert(asked("/alert/" + found.substr(2, kUuid)), now);
  ASSERT_EQ(there.status, 301);
  std::string const document = fpasMessage(asked(there.headers.at(0).second), now).body;
  auto const first = messagesOf(*demoIssuerOf("KE"), now).at(0);
  EXPECT_EQ(document, wmoMessage(asked("/v2/cap-alerts/" + first.file()), now).body);
  EXPECT_THAT(document, HasSubstr(first.identifier()));
}

}  // namespace
}  // namespace nimbara
