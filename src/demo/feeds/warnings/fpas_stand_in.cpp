#include "demo/feeds/warnings/fpas_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/warnings/demo_cap.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::string_view kAlertPath = "/alert/";
constexpr std::string_view kFilePath = "/cap/";
constexpr std::string_view kFileEnd = ".xml";
constexpr int kDay = 86'400;

/// With the dashes of a UUID.
std::string dashed(std::string_view code) {
  constexpr std::size_t kDashes[] = {8, 12, 16, 20};
  std::string text;
  for (std::size_t i = 0; i < code.size(); ++i) {
    if (std::ranges::find(kDashes, i) != std::end(kDashes)) text += '-';
    text += code[i];
  }
  return text;
}

std::optional<DemoWorldMessage> messageOf(std::string_view uuid) {
  std::string code = asciiLowered(uuid);
  std::erase(code, '-');
  return demoMessageOf(code);
}

bool isServed(DemoIssuer const& issuer) {
  return issuer.isMirrored() && issuer.isAtServer;
}

bool canDraw(DemoIssuer const& issuer) {
  return issuer.shape != DemoShape::codes;
}

/// Of the box; nothing for one without an extent.
std::optional<Coordinate> middleOf(DemoRequest const& request) {
  auto const south = parseDouble(request.query("min_lat"));
  auto const north = parseDouble(request.query("max_lat"));
  auto const west = parseDouble(request.query("min_lon"));
  auto const east = parseDouble(request.query("max_lon"));
  if (!south || !north || !west || !east || !(*south < *north) || !(*west < *east)) return std::nullopt;
  Coordinate const middle{(*south + *north) / 2, (*west + *east) / 2};
  return isValid(middle) ? std::optional(middle) : std::nullopt;
}

/// Calm countries have had a message earlier that day.
void writeFeed(JsonWriter& json, DemoIssuer const& issuer, Instant now) {
  json.separate();
  json.beginObject();
  json.member("name", std::string(issuer.country) + ": " + demoServiceName(issuer));
  json.member("source_is_official", true);
  json.member("cap_alert_feed_status", "operating");
  json.member("authorityCountry", asciiLowered(issuer.countryCode));
  json.key("register_url");
  json.null();
  json.key("latest_published_alert_datetime");
  canDraw(issuer) ? json.value(std::chrono::floor<std::chrono::days>(now)) : json.null();
  json.endObject();
}

}  // namespace

DemoAnswer fpasArea(DemoRequest const& request, Instant now) {
  auto const place = middleOf(request);
  if (!place) return {400, "invalid bounding box", {{"Content-Type", "text/plain"}}};
  DemoIssuer const* const issuer = demoIssuerAt(*place);
  if (issuer != nullptr && issuer->silence == DemoSilence::everywhere)
    return {200, "<!doctype html><title>Maintenance</title><p>We are back soon.", {}};
  std::vector<std::string> identifiers;
  if (issuer != nullptr && isServed(*issuer) && canDraw(*issuer)) {
    for (auto const& message : demoWorldMessages(*issuer, demoWarnedTile(*issuer, *place), now))
      identifiers.push_back(dashed(message.code()));
  }
  JsonWriter json;
  json.value(identifiers);
  return {200, json.take(), {}};
}

DemoAnswer fpasAlert(DemoRequest const& request, Instant) {
  auto const message = messageOf(std::string_view(request.path).substr(kAlertPath.size()));
  if (!message) return {404, "Not Found", {}};
  std::string const file = std::string(kFilePath) + dashed(message->code()) + std::string(kFileEnd);
  return {301, {}, {{"Location", file}}};
}

DemoAnswer fpasMessage(DemoRequest const& request, Instant) {
  std::string_view uuid = std::string_view(request.path).substr(kFilePath.size());
  uuid.remove_suffix(kFileEnd.size());
  auto const message = messageOf(uuid);
  if (!message) return {404, "Not Found", {}};
  DemoAnswer answer = conditionalAnswer(request, demoCapDocument(*message), kDay);
  answer.headers.emplace_back("Content-Type", "application/xml");
  return answer;
}

DemoAnswer fpasAreaStatus(DemoRequest const& request, Instant now) {
  std::string const wanted = asciiLowered(request.query("country_codes"));
  auto const countries = split(wanted, ',');
  JsonWriter json;
  json.beginObject();
  json.key("results");
  json.beginList();
  for (DemoIssuer const& issuer : demoIssuers()) {
    std::string const country = asciiLowered(issuer.countryCode);
    bool const isAsked = wanted.empty() || std::ranges::find(countries, country) != countries.end();
    if (isAsked && isServed(issuer)) writeFeed(json, issuer, now);
  }
  json.endList();
  json.endObject();
  return conditionalAnswer(request, json.take(), kDay);
}

}  // namespace nimbara
