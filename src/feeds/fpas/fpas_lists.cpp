#include "feeds/fpas/fpas_lists.h"

#include "base/text/text.h"
#include "base/uuid.h"
#include "feeds/fetching/lenient_json.h"
#include "regions/country_code.h"

#include <set>

namespace nimbara {

namespace {

struct WireFeed {
  std::string status;
  std::string country;
  Lenient<Instant> lastAlertAt;
};

struct WireFeeds {
  std::vector<WireFeed> results;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireFeed> = FieldList{
    field("cap_alert_feed_status", &WireFeed::status), field("authorityCountry", &WireFeed::country),
    fieldOr("latest_published_alert_datetime", &WireFeed::lastAlertAt)};
template <>
inline constexpr auto jsonFields<WireFeeds> = FieldList{field("results", &WireFeeds::results)};

template Result<std::vector<FpasFeed>, DecodeError> decodeJson(std::string_view);

Result<FpasAlertIds, DecodeError> parseFpasAlertIds(std::string_view body) {
  auto const list = decodeJson<std::vector<Lenient<std::string>>>(body);
  if (!list) return std::unexpected(list.error());
  FpasAlertIds result;
  std::set<Uuid> seen;
  for (Lenient<std::string> const& entry : *list) {
    auto const id = entry.value ? Uuid::parse(trimmed(*entry.value)) : std::nullopt;
    if (!id) {
      ++result.unreadable;
    } else if (seen.insert(*id).second) {
      result.ids.push_back(id->text());
    }
  }
  return result;
}

Result<std::vector<FpasFeed>, DecodeError> parseFpasFeeds(std::string_view body) {
  auto const wire = decodeJson<WireFeeds>(body);
  if (!wire) return std::unexpected(wire.error());
  std::vector<FpasFeed> feeds;
  for (WireFeed const& feed : wire->results) {
    feeds.push_back({isoCountryCode(trimmed(feed.country)), asciiLowered(trimmed(feed.status)) == "operating",
                     feed.lastAlertAt.value});
  }
  return feeds;
}

}  // namespace nimbara
