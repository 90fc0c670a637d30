#include "feeds/wmo/wmo_service.h"

#include "base/text/text.h"
#include "support/answers/cap_message.h"
#include "support/answers/wmo_answer.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::CapBlock;
using test::capMessage;
using test::wmoAnswer;
using test::WmoFeature;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view kBase = "https://swic.example";
constexpr std::string_view kPoint = "/f/wfs?";
constexpr std::string_view kList = "/g/wfs?";
constexpr std::string_view kCap = "/v2/cap-alerts/";
constexpr std::string_view kMembers = "/json/wmo_member.json";
constexpr std::string_view kSources = "/v2/json/sources.json";
constexpr std::string_view kAreas = "/f/wfs?areas";
constexpr Coordinate kAstana{51.1694, 71.4491};
using Kind = ServiceFailure::Kind;

/// Answers by what is asked: the longest beginning that is known, 404 where there is none.
class Centre final : public HttpClient {
 public:
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token) override {
    std::string path = request.url.substr(kBase.size());
    if (path.contains("propertyName")) path = kAreas;
    asked.push_back(request.url.substr(kBase.size()));
    if (isAway) return std::unexpected(HttpError{HttpError::Kind::connectionFailed, "refused"});
    HttpResponse const* best = nullptr;
    std::size_t length = 0;
    for (auto const& [beginning, answer] : answers) {
      if (!path.starts_with(beginning) || beginning.size() < length) continue;
      best = &answer;
      length = beginning.size();
    }
    return best == nullptr ? HttpResponse{404, {}, ""} : *best;
  }

  void answer(std::string_view beginning, std::string body, int status = 200) {
    answers[std::string(beginning)] = {status, {}, std::move(body)};
  }
  std::size_t count(std::string_view beginning) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(asked, [&](std::string const& one) { return one.starts_with(beginning); }));
  }

  std::map<std::string, HttpResponse> answers;
  std::vector<std::string> asked;
  bool isAway = false;
};

WmoFeature feature(std::string const& capurl, std::string const& severity = "3") {
  WmoFeature one;
  one.capurl = capurl;
  one.identifier = "of " + capurl;
  one.s = severity;
  return one;
}

std::string drawn(std::string const& area = "<polygon>50,70 50,72 52,72 50,70</polygon>") {
  CapBlock block;
  std::string message = capMessage({block});
  return message.replace(message.find("<area>"), 6, "<area>" + area);
}

class WmoServiceTest : public testing::Test {
 protected:
  WmoServiceTest() {
    centre.answer(kPoint, wmoAnswer({}));
    centre.answer(kList, wmoAnswer({}));
    centre.answer(kAreas, "Err\n");
    centre.answer(kMembers, R"([{"ra":2,"members":[{"mid":"070","code":"KAZ"},{"mid":"001","code":"CHN"},
                                {"mid":"064","code":"GNB"},{"mid":"046","code":"NZL"}]}])");
    centre.answer(kSources, R"({"sources":[
        {"source":{"sourceId":"kz-kazhydromet-en","capAlertFeedStatus":"operating"}},
        {"source":{"sourceId":"cn-cma-xx","capAlertFeedStatus":"operating"}},
        {"source":{"sourceId":"fj-fms-en","capAlertFeedStatus":"testing"}}]})");
  }
  CapListing fetch(std::string_view country = "KZ", Coordinate place = kAstana) {
    return service.fetch(place, country);
  }
  void document(std::string const& capurl, std::string body) {
    centre.answer(std::string(kCap) + capurl, std::move(body));
  }
  std::vector<std::string> links(CapListing const& listing) const {
    std::vector<std::string> list;
    list.reserve(listing.messages.size());
    for (CapMessage const& message : listing.messages)
      list.push_back(message.link.substr(kBase.size() + kCap.size()));
    return list;
  }

  test::TemporaryFolder folder;
  Centre centre;
  test::ManualClock clock{at("2026-11-22T12:00:00Z")};
  CapStore documents{centre, clock, folder.path() / "cap"};
  WmoService service{centre, clock, documents, {std::string(kBase), folder.path()}};
};

TEST_F(WmoServiceTest, AsksAsTheCentreWantsIt) {
  fetch();
  ASSERT_GE(centre.asked.size(), 4U);
  EXPECT_EQ(
      centre.asked[0],
      "/f/wfs?request=GetFeature&version=1.1.0&typeName=local_postgis:postgis_geojsons&outputFormat=json"
      "&cql_filter=INTERSECTS%28wkb_geometry%2C%20POINT%20%2851.1694%2071.4491%29%29%20AND%20row_type%20"
      "NEQ%20%27BOUNDARY%27");
  EXPECT_EQ(centre.asked[3],
            "/g/wfs?request=GetFeature&version=1.1.0&typeName=local_postgis:effective_warning_view"
            "&outputFormat=json&maxFeatures=1000&sortBy=capurl&cql_filter=mem%3D%27070%27");
}

TEST_F(WmoServiceTest, ListsWhatTheCentrePlacesAtThePoint) {
  WmoFeature one = feature("kz-kazhydromet-en/1.xml");
  one.rlink = "kz-kazhydromet-ru/1.xml";
  WmoFeature two = feature("kz-kazhydromet-ru/1.xml");
  two.rlink = one.capurl;
  centre.answer(kPoint, wmoAnswer({one, two}));
  document(one.capurl, capMessage({{}}));
  document(two.capurl, drawn());
  CapListing const listing = fetch();
  EXPECT_EQ(listing.failure, std::nullopt);
  EXPECT_FALSE(listing.isBlind);
  ASSERT_THAT(links(listing), ElementsAre(one.capurl, two.capurl)) << "each message once";
  for (CapMessage const& message : listing.messages) {
    EXPECT_TRUE(message.isHit);
    EXPECT_EQ(message.country, "KZ");
    EXPECT_EQ(message.alert->sender, "office@weather.example");
  }
  EXPECT_THAT(listing.messages[0].outline, SizeIs(1)) << "the message itself draws nothing";
  EXPECT_THAT(listing.messages[1].outline, IsEmpty());
}

TEST_F(WmoServiceTest, DropsWhatHasEnded) {
  centre.answer(kPoint, wmoAnswer({feature("kz-kazhydromet-en/1.xml")}));  // until 08:00 on the 23rd
  document("kz-kazhydromet-en/1.xml", drawn());
  clock.set(at("2026-11-23T07:59:59Z"));
  EXPECT_THAT(fetch().messages, SizeIs(1));
  clock.set(at("2026-11-23T08:00:00Z"));
  CapListing const listing = fetch();
  EXPECT_THAT(listing.messages, IsEmpty());
  EXPECT_FALSE(listing.isBlind);
}

TEST_F(WmoServiceTest, ListsAWarningWithoutItsMessage) {
  WmoFeature lost = feature("kz-kazhydromet-en/1.xml");
  lost.more = R"("description":"Gusts",)";
  WmoFeature odd = feature("kz-kazhydromet-en/../../secret");
  centre.answer(kPoint, wmoAnswer({lost, odd}));
  CapListing const listing = fetch();
  ASSERT_TRUE(listing.failure);
  EXPECT_EQ(listing.failure->kind, Kind::incomplete);
  EXPECT_EQ(listing.failure->detail, "the full text of 1 warning could not be fetched");
  ASSERT_THAT(listing.messages, SizeIs(2));
  CapMessage const& message = listing.messages[0];
  EXPECT_TRUE(message.isHit);
  EXPECT_THAT(message.link, EndsWith(lost.capurl));
  EXPECT_EQ(message.alert->identifier, lost.identifier);
  EXPECT_EQ(message.alert->infos[0].severity, "Severe");
  EXPECT_EQ(message.alert->infos[0].description, "Gusts");
  EXPECT_THAT(message.outline, SizeIs(1));
  EXPECT_EQ(listing.messages[1].link, "") << "it leads out of the folder";
  EXPECT_EQ(centre.count("/v2/cap-alerts/kz-kazhydromet-en/.."), 0U);
  document(lost.capurl, drawn());
  clock.advance(5min);
  EXPECT_EQ(fetch().failure, std::nullopt);
}

TEST_F(WmoServiceTest, FetchesManyMessagesOfAPoint) {
  std::vector<WmoFeature> features;
  features.reserve(30);
  for (int i = 0; i < 30; ++i) {
    features.push_back(feature("kz-kazhydromet-en/" + std::to_string(i) + ".xml"));
    document(features.back().capurl, drawn());
  }
  centre.answer(kPoint, wmoAnswer(features));
  EXPECT_EQ(fetch().failure, std::nullopt);
  EXPECT_EQ(centre.count(kCap), 30U);
  fetch();
  EXPECT_EQ(centre.count(kCap), 30U) << "once for ever";
}

TEST_F(WmoServiceTest, IsNotFooledByStatus200) {
  for (std::string const& body :
       {std::string(), std::string("Err\nErr\n"), std::string("<html>Log in</html>"), std::string("{}"),
        std::string("<ows:ExceptionReport/>"), wmoAnswer({{}}).substr(0, 200)}) {
    centre.answer(kPoint, body);
    CapListing const listing = fetch();
    ASSERT_TRUE(listing.failure) << body;
    EXPECT_EQ(listing.failure->kind, Kind::unreadable) << body;
    EXPECT_FALSE(listing.isBlind);
  }
  centre.answer(kPoint, "busy", 503);
  EXPECT_EQ(fetch().failure, ServiceFailure::answered(503));
  centre.isAway = true;
  EXPECT_EQ(fetch().failure->kind, Kind::network);
  EXPECT_EQ(fetch("KZ", {91, 0}).failure->kind, Kind::noSuchPlace);
}

TEST_F(WmoServiceTest, KeepsNobodyWaitingForACentreThatIsAway) {
  centre.isAway = true;
  EXPECT_EQ(fetch().failure->transport, HttpError::Kind::connectionFailed);
  centre.isAway = false;
  clock.advance(WmoService::kRestWhenAway - 1s);
  EXPECT_EQ(fetch("NZ", {-41.3, 174.8}).failure->transport, HttpError::Kind::connectionFailed);
  EXPECT_THAT(centre.asked, SizeIs(1));
  clock.advance(1s);
  EXPECT_FALSE(fetch().failure);
}

TEST_F(WmoServiceTest, AsksForACountrysListOnceForAllOfItsPlaces) {
  Coordinate const almaty{43.25, 76.92};
  fetch();
  clock.advance(10min - 1s);
  fetch("kz", almaty);
  EXPECT_EQ(centre.count(kList), 1U);
  EXPECT_EQ(centre.count(kPoint), 2U);
  clock.advance(1s);
  fetch("KZ", almaty);
  EXPECT_EQ(centre.count(kList), 2U);
  fetch("NZ", {-41.3, 174.8});
  EXPECT_EQ(centre.count(kList), 3U);
  fetch("", {0, 0});
  fetch("SO", {2, 45});
  EXPECT_EQ(centre.count(kList), 3U) << "the open sea is no member";
}

TEST_F(WmoServiceTest, TellsThatACountrysListFailed) {
  centre.answer(kPoint, wmoAnswer({feature("kz-kazhydromet-en/1.xml")}));
  document("kz-kazhydromet-en/1.xml", drawn());
  centre.answer(kList, "Err\n");
  CapListing const listing = fetch();
  ASSERT_TRUE(listing.failure);
  EXPECT_EQ(listing.failure->kind, Kind::unreadable);
  EXPECT_THAT(listing.messages, SizeIs(1)) << "what could be read stands in it";
  centre.answer(kList, wmoAnswer({}));
  clock.advance(1min - 1s);
  EXPECT_TRUE(fetch().failure);
  EXPECT_EQ(centre.count(kList), 1U);
  clock.advance(1s);
  EXPECT_FALSE(fetch().failure);
}

TEST_F(WmoServiceTest, ReadsALongListPageByPage) {
  auto const page = [](int first, std::size_t rows) {
    std::vector<WmoFeature> features;
    features.reserve(rows);
    for (std::size_t i = 0; i < rows; ++i)
      features.push_back(feature("cn-cma-xx/" + std::to_string(first + static_cast<int>(i))));
    return wmoAnswer(features);
  };
  std::string const second = "&startIndex=1000&";
  centre.answer(kList, page(0, 1000));
  std::string const query =
      "/g/wfs?request=GetFeature&version=1.1.0&typeName=local_postgis:effective_warning_view"
      "&outputFormat=json&maxFeatures=1000&sortBy=capurl";
  centre.answer(query + second, page(1000, 1));
  EXPECT_FALSE(fetch("CN").failure);
  EXPECT_EQ(centre.count(kList), 2U);
  centre.answer(query + second, "Err\n");
  clock.advance(10min);
  EXPECT_EQ(fetch("CN").failure->kind, Kind::unreadable);
  centre.answer(query + "&startIndex=", page(0, 1000));
  centre.answer(query + second, page(0, 1000));
  clock.advance(10min);
  EXPECT_EQ(fetch("CN").failure->kind, Kind::incomplete);
  EXPECT_EQ(centre.count(kList), 2U + 2U + WmoService::kMostPages);
  centre.answer(kList, wmoAnswer({feature("cn-cma-xx/1"), feature("cn-cma-xx/2")}, R"("totalFeatures":3,)"));
  centre.answer(query + "&startIndex=2&", wmoAnswer({feature("cn-cma-xx/3")}, R"("totalFeatures":3,)"));
  clock.advance(10min);
  EXPECT_FALSE(fetch("CN").failure) << "the centre may send fewer than it was asked for";
}

TEST_F(WmoServiceTest, ListsWhatHasNoAreaAndNothingElseOfTheCountry) {
  WmoFeature nationwide = feature("kz-kazhydromet-en/nation.xml");
  nationwide.rlink = "kz-kazhydromet-ru/nation.xml";
  centre.answer(kList, wmoAnswer({feature("kz-kazhydromet-en/drawn.xml"), nationwide,
                                  feature("kz-kazhydromet-en/circle.xml"), feature("cn-cma-xx/1.xml")}));
  document("kz-kazhydromet-en/drawn.xml", drawn());
  document("kz-kazhydromet-en/circle.xml", drawn("<circle>50,70 20</circle>"));
  document(nationwide.capurl, drawn("<polygon/>"));
  document(nationwide.rlink, capMessage({{}}));
  for (int pass = 0; pass < 2; ++pass) {
    CapListing const listing = fetch();
    EXPECT_EQ(listing.failure, std::nullopt);
    ASSERT_THAT(links(listing), ElementsAre(nationwide.capurl, nationwide.rlink));
    EXPECT_FALSE(listing.messages[0].isHit);
    EXPECT_THAT(listing.messages[0].outline, IsEmpty());
  }
  EXPECT_EQ(centre.count(kCap), 4U);
}

TEST_F(WmoServiceTest, DoesNotListWhatTheCentreHasDrawnElsewhere) {
  WmoFeature area = feature("kz-kazhydromet-en/codes.xml");
  WmoFeature point = feature("kz-kazhydromet-en/nation.xml");
  centre.answer(kList, wmoAnswer({area, point}));
  document(area.capurl, capMessage({{}}));
  document(point.capurl, capMessage({{}}));
  EXPECT_THAT(links(fetch()), ElementsAre(area.capurl, point.capurl)) << "the centre does not tell";
  std::string rows = wmoAnswer({area, point});
  rows.replace(rows.rfind("POLYGON"), 7, "POINT");
  centre.answer(kAreas, rows);
  fetch();
  EXPECT_EQ(std::ranges::count_if(centre.asked, [](auto const& one) { return one.contains("propertyName"); }),
            1)
      << "a question that was refused is not repeated at once";
  clock.advance(1h);
  EXPECT_THAT(links(fetch()), ElementsAre(point.capurl));
  EXPECT_THAT(centre.asked.back(), HasSubstr("capurl%20IN%20%28%27kz-kazhydromet-en%2Fcodes.xml%27%2C%27"));
  fetch();
  EXPECT_EQ(std::ranges::count_if(centre.asked, [](auto const& one) { return one.contains("propertyName"); }),
            2)
      << "a message never changes";
}

TEST_F(WmoServiceTest, LooksAtSomeOfACountrysMessagesInEachPass) {
  std::vector<WmoFeature> features;
  features.reserve(30);
  for (int i = 0; i < 30; ++i) {
    features.push_back(feature("kz-kazhydromet-en/" + std::to_string(i) + ".xml", i == 29 ? "4" : "2"));
    if (i != 28) document(features.back().capurl, capMessage({{}}));
  }
  features[28].s = "4";
  features[28].sent = "2026-11-22T09:00:00Z";  // the most urgent one cannot be fetched
  centre.answer(kList, wmoAnswer(features));
  CapListing const first = fetch();
  EXPECT_FALSE(first.failure);
  EXPECT_THAT(links(first), SizeIs(11));
  EXPECT_EQ(centre.asked[4], std::string(kCap) + features[28].capurl);
  EXPECT_EQ(centre.asked[5], std::string(kCap) + features[29].capurl);
  clock.advance(10min);
  EXPECT_THAT(fetch().messages, SizeIs(23)) << "what failed waits behind what was never tried";
  clock.advance(10min);
  EXPECT_THAT(fetch().messages, SizeIs(29));
  EXPECT_EQ(centre.count(std::string(kCap) + features[28].capurl), 2U);
}

TEST_F(WmoServiceTest, KeepsListingWhatHasNoAreaWhenItsMessageIsGone) {
  centre.answer(kList, wmoAnswer({feature("kz-kazhydromet-en/1.xml")}));
  document("kz-kazhydromet-en/1.xml", capMessage({{}}));
  CapStore forgetful(centre, clock, {}, {.requests = 1});
  WmoService other(centre, clock, forgetful, {std::string(kBase), {}});
  EXPECT_THAT(other.fetch(kAstana, "KZ").messages, SizeIs(1));
  std::vector<std::string> crowd;
  for (int i = 0; i < 64; ++i) {
    crowd = {std::string(kBase) + std::string(kCap) + "crowd/" + std::to_string(i)};
    document("crowd/" + std::to_string(i), capMessage({{}}));
    forgetful.documents(crowd);
  }
  document("kz-kazhydromet-en/1.xml", "");
  CapListing const listing = other.fetch(kAstana, "KZ");
  ASSERT_TRUE(listing.failure);
  EXPECT_EQ(listing.failure->kind, Kind::incomplete);
  ASSERT_THAT(listing.messages, SizeIs(1));
  EXPECT_EQ(listing.messages[0].alert->identifier, "of kz-kazhydromet-en/1.xml");
}

TEST_F(WmoServiceTest, SaysWhereItIsBlind) {
  EXPECT_FALSE(fetch("KZ").isBlind);
  EXPECT_TRUE(fetch("FJ", {-18.1, 178.4}).isBlind) << "its source is only tried out";
  EXPECT_TRUE(fetch("", {0, -30}).isBlind) << "the open sea is nobody's";
  EXPECT_TRUE(fetch("CO", {4.6, -74.1}).isBlind);
  WmoFeature colombia = feature("co-ungrd-es/1.xml");
  centre.answer(kPoint, wmoAnswer({colombia}));
  EXPECT_TRUE(fetch("CO", {4.6, -74.1}).isBlind) << "what is left out shows nothing";
  centre.answer(kPoint, wmoAnswer({feature("kz-kazhydromet-en/1.xml")}));
  document("kz-kazhydromet-en/1.xml", drawn());
  EXPECT_FALSE(fetch("", {0, -30}).isBlind);
}

TEST_F(WmoServiceTest, IsNotBlindForACountryOfWhichItHadAWarning) {
  Coordinate const bissau{11.86, -15.6};
  EXPECT_TRUE(fetch("GW", bissau).isBlind);
  centre.answer(kPoint, wmoAnswer({feature("gw-inm-pt/1.xml")}));
  document("gw-inm-pt/1.xml", drawn());
  EXPECT_FALSE(fetch("GW", bissau).isBlind);
  centre.answer(kPoint, wmoAnswer({}));
  EXPECT_FALSE(fetch("GW", bissau).isBlind);
  WmoService later(centre, clock, documents, {std::string(kBase), folder.path()});
  clock.advance(WmoDirectory::kSeenLife - 1s);
  EXPECT_FALSE(later.fetch(bissau, "GW").isBlind);
  clock.advance(1s);
  EXPECT_TRUE(later.fetch(bissau, "GW").isBlind);
}

TEST_F(WmoServiceTest, AsksForTheDirectoryOnceAWeek) {
  fetch();
  WmoService other(centre, clock, documents, {std::string(kBase), folder.path()});
  other.fetch(kAstana, "KZ");
  clock.advance(WmoDirectory::kLife - 1s);
  fetch();
  EXPECT_EQ(centre.count(kMembers), 1U);
  EXPECT_EQ(centre.count(kSources), 1U);
  clock.advance(1s);
  fetch();
  other.fetch(kAstana, "KZ");
  EXPECT_EQ(centre.count(kMembers), 2U) << "one process asks for all";
  EXPECT_EQ(centre.count(kSources), 2U);
}

TEST_F(WmoServiceTest, DoesWithoutTheDirectory) {
  for (std::string_view const path : {kMembers, kSources}) centre.answer(path, "<html></html>");
  EXPECT_FALSE(fetch().failure) << "Kazakhstan's number is built in";
  EXPECT_THAT(centre.asked.back(), HasSubstr("mem%3D%27070%27"));
  EXPECT_FALSE(fetch("BR", {-23.5, -46.6}).isBlind);
  CapListing const unknown = fetch("JP", {35.7, 139.7});
  ASSERT_TRUE(unknown.failure) << "nobody knows under which number it is listed";
  EXPECT_EQ(unknown.failure->kind, Kind::unreadable);
  EXPECT_EQ(centre.count(kMembers), 1U);
  clock.advance(1h - 1s);
  fetch();
  EXPECT_EQ(centre.count(kMembers), 1U);
  clock.advance(1s);
  centre.answer(kMembers, R"([{"mid":"045","code":"JPN"}])");
  CapListing const known = fetch("JP", {35.7, 139.7});
  EXPECT_FALSE(known.failure);
  EXPECT_TRUE(known.isBlind);
  EXPECT_THAT(centre.asked.back(), HasSubstr("mem%3D%27045%27"));
}

TEST_F(WmoServiceTest, KeepsAnOldDirectoryRatherThanNone) {
  fetch();
  for (std::string_view const path : {kMembers, kSources}) centre.answer(path, "", 503);
  clock.advance(24h * 30);
  EXPECT_TRUE(fetch("FJ", {-18.1, 178.4}).isBlind);
  EXPECT_FALSE(fetch().isBlind);
  EXPECT_TRUE(fetch("BR", {-23.5, -46.6}).isBlind) << "the directory names other countries than the program";
}

}  // namespace
}  // namespace nimbara
