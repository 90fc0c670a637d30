#include "demo/feeds/warnings/wmo_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/feeds/warnings/geo_outline.h"
#include "demo/world/demo_words.h"
#include "demo/world/warnings/demo_cap.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nimbara {

char const kWmoException[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<ows:ExceptionReport xmlns:ows=\"http://www.opengis.net/ows\" version=\"1.0.0\">\n"
    "  <ows:Exception exceptionCode=\"NoApplicableCode\">\n"
    "    <ows:ExceptionText>Could not parse CQL filter list.</ows:ExceptionText>\n"
    "  </ows:Exception>\n</ows:ExceptionReport>\n";

namespace {

constexpr std::string_view kCapPath = "/v2/cap-alerts/";
constexpr std::string_view kErr = "Err\nErr\n";
constexpr int kDay = 86'400;

struct Row {
  DemoWorldMessage message;
  DemoStep step;

  DemoWords const& words() const {
    return demoWords(message.isInEnglish ? std::string_view() : message.event.issuer->language);
  }
  std::string_view event() const { return words().events[message.event.kind]; }
};

/// 1 Minor … 4 Extreme, 0 unknown.
int severityCode(Row const& row) {
  return row.message.event.issuer->has(kNoSeverity) ? 0 : row.step.level + 1;
}

/// 3 Expected, 4 Immediate.
int urgencyCode(Row const& row) {
  return row.step.sent < row.message.event.begin ? 3 : 4;
}

std::vector<Row> rowsOf(DemoIssuer const& issuer, DemoTile tile, Instant now) {
  std::vector<Row> rows;
  if (!issuer.isMirrored()) return rows;
  for (DemoWorldMessage const& message : demoWorldMessages(issuer, tile, now))
    rows.push_back({message, message.about()});
  return rows;
}

void writeLink(JsonWriter& json, std::string_view name, std::optional<DemoWorldMessage> const& message) {
  json.key(name);
  message ? json.value(message->file()) : json.null();
}

/// The two numbers of "POINT (-33.9 18.4)".
std::optional<Coordinate> pointIn(std::string_view filter) {
  auto const word = filter.find("POINT");
  auto const open = filter.find('(', word == std::string_view::npos ? filter.size() : word);
  auto const close = filter.find(')', open == std::string_view::npos ? filter.size() : open);
  if (close == std::string_view::npos) return std::nullopt;
  std::string_view const inside = trimmed(filter.substr(open + 1, close - open - 1));
  auto const blank = inside.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  return demoCoordinate(inside.substr(0, blank), trimmed(inside.substr(blank)));
}

DemoAnswer exceptionAnswer() {
  return {200, kWmoException, {{"Content-Type", "application/xml"}}};
}

class Collection {
 public:
  explicit Collection(Instant now) : now_(now) {
    json_.beginObject();
    json_.member("type", "FeatureCollection");
    json_.key("features");
    json_.beginList();
  }

  /// Opens a feature as far as its properties. Features are numbered anew in each answer.
  JsonWriter& open(std::string_view layer, std::vector<std::vector<Coordinate>> const* outlines) {
    json_.separate();
    json_.beginObject();
    json_.member("type", "Feature");
    json_.member("id", fmt::format("{}.fid--{:x}_{:x}", layer, now_.time_since_epoch().count(), count_++));
    json_.key("geometry");
    outlines == nullptr ? json_.null() : writeGeometry(json_, *outlines);
    json_.key("properties");
    json_.beginObject();
    return json_;
  }
  void close() {
    json_.endObject();
    json_.endObject();
  }

  DemoAnswer answer() {
    json_.endList();
    json_.member("totalFeatures", count_);
    json_.member("numberMatched", count_);
    json_.member("numberReturned", count_);
    json_.member("timeStamp", formatIso8601(now_));
    json_.endObject();
    return {200, json_.take(), {}};
  }

 private:
  Instant now_;
  JsonWriter json_;
  std::int64_t count_ = 0;
};

void addFound(Collection& found, Row const& row) {
  DemoEvent const& event = row.message.event;
  auto const outlines = event.tile.outlines();
  JsonWriter& json = found.open("postgis_geojsons", &outlines);
  json.member("capurl", row.message.file());
  writeLink(json, "rlink", row.message.inOtherLanguage());
  json.member("identifier", row.message.identifier());
  json.member("sent", formatIso8601(row.step.sent));
  json.member("description", event.issuer->has(kNoText) ? "" : row.words().sentenceFor(demoAreaName(event)));
  json.member("event", row.event());
  json.member("s", severityCode(row));
  json.member("effective", formatIso8601(row.step.sent));
  json.member("onset", formatIso8601(event.begin));
  json.member("expires", formatIso8601(row.step.end));
  json.member("url", row.message.file());
  json.member("row_type", "POLYGON");
  found.close();
}

void addListed(Collection& list, Row const& row, std::string_view member) {
  DemoEvent const& event = row.message.event;
  JsonWriter& json = list.open("effective_warning_view", nullptr);
  json.member("capurl", row.message.file());
  json.member("sent", formatIso8601(row.step.sent));
  json.member("event", row.event());
  json.member("s", severityCode(row));
  json.member("u", urgencyCode(row));
  json.member("c", 3);
  json.member("mem", member);
  json.member("areadesc", demoAreaName(event));
  writeLink(json, "rlink", row.message.inOtherLanguage());
  list.close();
}

void addType(Collection& found, std::string_view file, DemoWorldMessage const& message) {
  JsonWriter& json = found.open("postgis_geojsons", nullptr);
  json.member("capurl", file);
  json.member("row_type", message.event.issuer->shape == DemoShape::country ? "POINT" : "POLYGON");
  found.close();
}

/// Of a path "kz-demo-en/2026/11/21/06/00/00-….xml".
std::optional<DemoWorldMessage> messageOf(std::string_view file) {
  auto const dash = file.rfind('-');
  auto const dot = file.rfind('.');
  if (dash == std::string_view::npos || dot == std::string_view::npos || dash > dot) return std::nullopt;
  auto const message = demoMessageOf(file.substr(dash + 1, dot - dash - 1));
  return message && message->file() == file ? message : std::nullopt;
}

/// Every other part between the apostrophes of "capurl IN ('…','…')".
DemoAnswer typesOf(std::string_view filter, Instant now) {
  Collection found(now);
  auto const parts = split(filter, '\'');
  for (std::size_t i = 1; i < parts.size(); i += 2) {
    if (auto const message = messageOf(parts[i])) addType(found, parts[i], *message);
  }
  return found.answer();
}

/// Members are numbered as the demo lists them.
std::string memberOf(DemoIssuer const& issuer) {
  return fmt::format("{:03}", &issuer - demoIssuers().data() + 1);
}

/// The digits of "mem='075'"; empty without a filter, nothing for another one.
std::optional<std::string> memberIn(std::string const& filter) {
  if (filter.empty()) return std::string();
  auto const first = filter.find('\'');
  auto const last = filter.rfind('\'');
  bool const isKnown = trimmed(filter).starts_with("mem") && first < last && last != std::string::npos;
  return isKnown ? std::optional(filter.substr(first + 1, last - first - 1)) : std::nullopt;
}

struct Region {
  std::string_view name;
  std::string_view countries;
};

constexpr Region kRegions[] = {
    {"Region I: Africa", "ZA KE NG EG TZ MG TD"},
    {"Region II: Asia", "KZ IN CN HK MO JP KR TH SA AE YE"},
    {"Region III: South America", "BR AR CL CO PE"},
    {"Region IV: North America, Central America and the Caribbean", "US CA MX JM"},
    {"Region V: South-West Pacific", "PH ID AU NZ FJ PG"},
    {"Region VI: Europe", "DE GB PL NL IL SJ RU"},
};

void writeMember(JsonWriter& json, DemoIssuer const& issuer) {
  json.separate();
  json.beginObject();
  json.member("mid", memberOf(issuer));
  json.member("name", issuer.country);
  json.member("dept", demoServiceName(issuer));
  json.member("code", issuer.alpha3);
  json.member("lat", issuer.place.latitude);
  json.member("lng", issuer.place.longitude);
  json.endObject();
}

void writeSource(JsonWriter& json, DemoIssuer const& issuer, std::string_view feed, bool isOperating) {
  json.separate();
  json.beginObject();
  json.key("source");
  json.beginObject();
  json.member("sourceId", feed);
  json.member("sourceIsOfficial", true);
  json.member("authorityName", demoServiceName(issuer));
  json.member("authorityCountry", asciiLowered(issuer.countryCode));
  json.member("capAlertFeed", fmt::format("https://{}.demo.invalid/rss.xml", feed));
  json.member("capAlertFeedStatus", isOperating ? "operating" : "testing");
  json.endObject();
  json.endObject();
}

/// Papua New Guinea tries a feed out; Chad and Yemen have none.
void writeSources(JsonWriter& json, DemoIssuer const& issuer) {
  if (!issuer.isMirrored()) {
    if (issuer.countryCode == "PG") writeSource(json, issuer, "pg-demo-en", false);
    return;
  }
  DemoWorldMessage message;
  message.event.issuer = &issuer;
  writeSource(json, issuer, message.feed(), true);
  if (auto const other = message.inOtherLanguage()) writeSource(json, issuer, other->feed(), true);
}

}  // namespace

DemoAnswer wmoPointQuery(DemoRequest const& request, Instant now) {
  std::string const filter = request.query("cql_filter");
  if (filter.starts_with("capurl IN (")) return typesOf(filter, now);
  auto const place = pointIn(filter);
  if (request.query("request") != "GetFeature" || !place) return exceptionAnswer();
  Collection found(now);
  DemoIssuer const* const issuer = demoIssuerAt(*place);
  if (issuer == nullptr) return found.answer();
  if (issuer->silence != DemoSilence::none) return exceptionAnswer();
  if (issuer->shape == DemoShape::country) return found.answer();
  for (Row const& row : rowsOf(*issuer, demoTileAt(*place), now)) addFound(found, row);
  return found.answer();
}

DemoAnswer wmoWarningList(DemoRequest const& request, Instant now) {
  auto const member = memberIn(request.query("cql_filter"));
  if (request.query("request") != "GetFeature" || !member) return exceptionAnswer();
  bool const isPaged = !request.query("startIndex").empty();
  if (isPaged && request.query("sortBy").empty()) return {200, std::string(kErr), {}};
  Collection list(now);
  for (DemoIssuer const& issuer : demoIssuers()) {
    if (!member->empty() && *member != memberOf(issuer)) continue;
    if (!member->empty() && issuer.silence != DemoSilence::none) return {200, std::string(kErr), {}};
    for (Row const& row : rowsOf(issuer, demoTileAt(issuer.place), now)) {
      if (!row.step.isOver && now < row.step.end) addListed(list, row, memberOf(issuer));
    }
  }
  return list.answer();
}

DemoAnswer wmoMembers(DemoRequest const& request, Instant) {
  JsonWriter json;
  json.beginList();
  for (Region const& region : kRegions) {
    json.separate();
    json.beginObject();
    json.member("region", region.name);
    json.key("members");
    json.beginList();
    for (std::string_view const code : split(region.countries, ' ')) writeMember(json, *demoIssuerOf(code));
    json.endList();
    json.endObject();
  }
  json.endList();
  return conditionalAnswer(request, json.take(), kDay);
}

DemoAnswer wmoSources(DemoRequest const& request, Instant) {
  JsonWriter json;
  json.beginObject();
  json.key("sources");
  json.beginList();
  for (DemoIssuer const& issuer : demoIssuers()) writeSources(json, issuer);
  json.endList();
  json.endObject();
  return conditionalAnswer(request, json.take(), kDay);
}

DemoAnswer wmoMessage(DemoRequest const& request, Instant) {
  auto const message = messageOf(std::string_view(request.path).substr(kCapPath.size()));
  if (!message) return {404, "Not Found", {}};
  DemoAnswer answer = conditionalAnswer(request, demoCapDocument(*message), kDay);
  answer.headers.emplace_back("Content-Type", "application/xml");
  return answer;
}

}  // namespace nimbara
