// The days beyond a forecast's seven, from Open-Meteo, whichever service the forecast itself is from:
// extremes of the day only, asked for when somebody looks at them. Never raises an error.
#pragma once

#include "base/geodesy.h"
#include "feeds/fetching/watched_feed.h"

#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct OutlookDay {
  Date date;  ///< of the place
  double lowestC = 0;
  double highestC = 0;
  std::optional<int> weatherCode;  ///< WMO 4677, the day's most severe
  std::optional<int> chance;       ///< of precipitation, %
  std::optional<double> precipMM;
  std::optional<double> windKmph;  ///< the strongest

  bool operator==(OutlookDay const&) const = default;
};

/// In their order, without days whose temperatures are missing or impossible.
Result<std::vector<OutlookDay>, DecodeError> parseOutlook(std::string_view body);

class OutlookService {
 public:
  static constexpr std::chrono::hours kLife{3};
  static constexpr std::size_t kMostPlaces = 32;
  static constexpr int kDays = 16;

  struct Options {
    std::string base;  ///< "https://api.open-meteo.com"
    std::string apiKey;
  };

  OutlookService(HttpClient& http, Clock const& clock, Options options);

  /// All days from today on. Blocks for the request where one is due.
  FeedReading<std::vector<OutlookDay>> fetch(Coordinate place, std::stop_token const& stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  WatchedFeeds<std::vector<OutlookDay>, kMostPlaces> places_;
};

}  // namespace nimbara
