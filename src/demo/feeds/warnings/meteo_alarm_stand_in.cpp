#include "demo/feeds/warnings/meteo_alarm_stand_in.h"

#include "base/json/json.h"
#include "base/sha256.h"
#include "base/time/http_date.h"
#include "demo/world/warnings/demo_warning_messages.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kFeedPath = "/feeds/meteoalarm-legacy-atom-";
constexpr std::string_view kDocumentPath = "/api/v1/warnings/feeds-";
constexpr std::string_view kDocument = "MeteoAlarm_Geocodes_2026_11_01.json";

std::string areaElements(DemoRegion const& region) {
  if (region.code.empty()) return {};
  if (!region.isDrawn()) {
    return fmt::format(
        "    <cap:geocode>\n      <valueName>EMMA_ID</valueName>\n      <value>{0}</value>\n"
        "    </cap:geocode>\n    <link href=\"https://meteoalarm.org?geocode=EMMA_ID:{0}\" "
        "hreflang=\"en\"/>\n",
        region.code);
  }
  return "    <cap:polygon>" + region.outlineText() + "</cap:polygon>\n";
}

class FeedWriter {
 public:
  FeedWriter(std::string_view feedName, Instant now) : feedName_(feedName) {
    out_ = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<feed xmlns=\"http://www.w3.org/2005/Atom\" xmlns:cap=\"urn:oasis:names:tc:emergency:cap:1.2\">\n"
        "  <link href=\"https://meteoalarm.org\" rel=\"alternate\" type=\"text/html\"/>\n"
        "  <rights>Generated for the demo; no real warnings</rights>\n"
        "  <author>\n    <name>nimbara-demo</name>\n  </author>\n"
        "  <id>tag:meteoalarm.org,2021-02-19:{0}</id>\n"
        "  <title>Meteoalarm - severe weather warnings for Europe</title>\n  <updated>{1}</updated>\n",
        feedName_, demoWarningTime(std::chrono::floor<std::chrono::hours>(now)));
  }

  void add(DemoWarningMessage const& message) {
    DemoRegion const& region = message.region;
    DemoWarning const& warning = message.warning;
    auto const level = static_cast<std::size_t>(warning.level);
    std::string const name = demoXmlText(region.name);
    std::string const sent = demoWarningTime(message.sent);
    out_ += fmt::format(
        "  <entry>\n{0}    <cap:areaDesc>{1}</cap:areaDesc>\n    <cap:event>{2} {3} warning</cap:event>\n"
        "    <cap:sent>{4}</cap:sent>\n    <cap:expires>{5}</cap:expires>\n    "
        "<cap:effective>{4}</cap:effective>\n"
        "    <cap:onset>{6}</cap:onset>\n    <cap:certainty>Likely</cap:certainty>\n"
        "    <cap:severity>{2}</cap:severity>\n    <cap:urgency>{7}</cap:urgency>\n"
        "    <cap:scope>Public</cap:scope>\n    <cap:message_type>{8}</cap:message_type>\n"
        "    <cap:status>Actual</cap:status>\n    <cap:identifier>{9}</cap:identifier>\n",
        areaElements(region), name, kDemoWarningSeverities[level], warning.kind, sent,
        demoWarningTime(warning.end), demoWarningTime(warning.begin),
        message.isUpdate ? "Immediate" : "Future", message.isUpdate ? "Update" : "Alert",
        message.identifier());
    out_ += fmt::format(
        "    <link href=\"https://feeds.meteoalarm.org/api/v1/warnings/feeds-{0}/{1}\" "
        "type=\"application/cap+xml\"/>\n    <author>\n      <name>meteoalarm.org</name>\n    </author>\n"
        "    <published>{2}</published>\n    "
        "<id>https://feeds.meteoalarm.org/api/v1/warnings/feeds-{0}/{1}"
        "?index_info=0&amp;index_area=0&amp;index_geocode=0</id>\n"
        "    <title>{3} {4} Warning issued for {5} - {6}</title>\n    <updated>{2}</updated>\n  </entry>\n",
        feedName_, message.documentName(), sent, kDemoWarningColours[level], warning.kind,
        demoXmlText(region.town->country), name);
  }

  std::string finish() && { return std::move(out_) + "</feed>\n"; }

 private:
  std::string_view feedName_;
  std::string out_;
};

void writeRing(JsonWriter& json, DemoRegion const& region) {
  json.beginList();
  for (Coordinate const corner : region.outline()) {
    json.separate();
    json.value(std::vector{corner.longitude, corner.latitude});
  }
  json.endList();
}

void writeFeature(JsonWriter& json, DemoRegion const& region) {
  json.beginObject();
  json.member("type", "Feature");
  json.key("properties");
  json.beginObject();
  json.member("code", region.code);
  json.member("country", std::string(region.town->countryCode));
  json.member("name", region.name);
  json.member("type", "EMMA_ID");
  json.endObject();
  json.key("geometry");
  json.beginObject();
  json.member("type", "Polygon");
  json.key("coordinates");
  json.beginList();
  json.separate();
  writeRing(json, region);
  json.endList();
  json.endObject();
  json.endObject();
}

/// The body, or word that it is what the client has.
DemoAnswer answerOf(DemoRequest const& request, std::string body, std::string contentType) {
  std::string const etag = "\"" + sha256Hex(body).substr(0, 16) + "\"";
  DemoAnswer answer{200, {}, {{"ETag", etag}, {"Content-Type", std::move(contentType)}}};
  if (request.header("If-None-Match") == etag) {
    answer.status = 304;
  } else {
    answer.body = std::move(body);
  }
  return answer;
}

}  // namespace

DemoAnswer meteoAlarmFeed(DemoRequest const& request, Instant now) {
  std::string_view const feedName = std::string_view(request.path).substr(kFeedPath.size());
  if (!isDemoFeed(feedName)) return {404, "Not Found", {}};
  auto const regions = demoRegionsOfFeed(feedName);
  FeedWriter writer(feedName, now);
  for (DemoWarningMessage const& message : demoWarningMessages(regions, now)) writer.add(message);
  return answerOf(request, std::move(writer).finish(), "application/atom+xml");
}

DemoAnswer meteoAlarmList(DemoRequest const& request, Instant now) {
  std::string_view const feedName = std::string_view(request.path).substr(kDocumentPath.size());
  if (!isDemoFeed(feedName)) return {404, "Not Found", {}};
  auto const regions = demoRegionsOfFeed(feedName);
  return answerOf(request, demoWarningList(demoWarningMessages(regions, now)), "application/json");
}

/// Feeds are kept for some minutes, so that documents of the hour before are still asked for.
DemoAnswer meteoAlarmDocument(DemoRequest const& request, Instant now) {
  std::string_view rest = std::string_view(request.path).substr(kDocumentPath.size());
  auto const slash = rest.find('/');
  auto const regions = demoRegionsOfFeed(rest.substr(0, slash));
  for (Instant const moment : {now, now - std::chrono::hours(1)}) {
    auto const messages = demoWarningMessages(regions, moment);
    auto const found = std::ranges::find(messages, rest.substr(slash + 1), &DemoWarningMessage::documentName);
    if (found != messages.end())
      return {200, demoWarningDocument(*found), {{"Content-Type", "application/cap+xml"}}};
  }
  return {404, "Not Found", {}};
}

DemoAnswer meteoAlarmOutlineList(DemoRequest const&, Instant) {
  JsonWriter json;
  json.beginList();
  for (std::string_view const name : {std::string_view("README.md"), kDocument}) {
    json.separate();
    json.beginObject();
    json.member("name", name);
    json.member("type", "blob");
    json.member("path", name);
    json.endObject();
  }
  json.endList();
  return {200, json.take(), {}};
}

DemoAnswer meteoAlarmOutlines(DemoRequest const& request, Instant) {
  if (!request.path.ends_with(kDocument)) return {404, "Not Found", {}};
  JsonWriter json;
  json.beginObject();
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  for (DemoRegion const& region : allDemoRegions()) {
    if (region.code.empty()) continue;
    json.separate();
    writeFeature(json, region);
  }
  json.endList();
  json.endObject();
  return answerOf(request, json.take(), "application/geo+json");
}

}  // namespace nimbara
