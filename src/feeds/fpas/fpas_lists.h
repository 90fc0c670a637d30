// The lists of a public alert server: which warnings touch a box, and which feeds it reads for a country.
// Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct FpasAlertIds {
  std::vector<std::string> ids;  ///< UUIDs, each once, in their order
  std::size_t unreadable = 0;    ///< entries that are none
};

/// A list of texts.
Result<FpasAlertIds, DecodeError> parseFpasAlertIds(std::string_view body);

/// A feed of one of the country's issuers that the server reads or means to read.
struct FpasFeed {
  std::string country;                 ///< ISO 3166-1; empty when not stated
  bool isOperating = false;            ///< not a trial of its issuer's and not given up
  std::optional<Instant> lastAlertAt;  ///< when the newest alert that came through it was sent

  bool operator==(FpasFeed const&) const = default;
};

template <>
inline constexpr auto jsonFields<FpasFeed> =
    FieldList{fieldOr("country", &FpasFeed::country), fieldOr("operating", &FpasFeed::isOperating),
              field("lastAlertAt", &FpasFeed::lastAlertAt)};

/// `{"results": [{"authorityCountry": "ch", "cap_alert_feed_status": "operating",
/// "latest_published_alert_datetime": …}, …]}`. A feed that cannot be read makes the list unreadable: of a
/// list that is not whole nobody can say what is not in it.
Result<std::vector<FpasFeed>, DecodeError> parseFpasFeeds(std::string_view body);

}  // namespace nimbara
