// The usual temperatures of a place, 1991 to 2020, from the reanalysis ERA5 through Open-Meteo's archive:
// asked for once and kept for ever, since the request counts as some 235. Beside them today's temperature of
// the forecast model and how much that model differs from ERA5 at the place. Never raises an error.
#pragma once

#include "base/geodesy.h"
#include "feeds/climate/climate_normals.h"
#include "feeds/fetching/watched_feed.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

struct ClimateOutlook {
  std::string grid;                 ///< the middle of the archive's cell, "52.50,13.50"
  Date date;                        ///< today at the place
  std::optional<ClimateDay> usual;  ///< of that day; absent where too few years are known
  std::optional<double> today;      ///< mean of the day, °C; absent without a forecast
  std::optional<double> bias;       ///< the model is so much warmer than ERA5; absent: not comparable

  /// Of the whole year, shared with the service; null before they are known.
  std::shared_ptr<ClimateNormals const> normals = {};

  /// How far today is from the median, once the model's own difference is taken away.
  std::optional<double> anomaly() const;
  std::optional<ClimateWord> word() const;
  bool operator==(ClimateOutlook const&) const = default;
};

class ClimateService {
 public:
  static constexpr std::chrono::hours kForecastLife{1};
  static constexpr std::chrono::days kBiasLife{30};
  static constexpr std::size_t kMostPlaces = 32;

  struct Options {
    std::string archiveBase;  ///< "https://archive-api.open-meteo.com"
    std::string archiveKey;
    std::string forecastBase;  ///< "https://api.open-meteo.com"
    std::string forecastKey;
    std::filesystem::path folder;  ///< empty: nothing outlives the process
  };

  ClimateService(HttpClient& http, Clock const& clock, Options options);

  /// `today` is the place's date. Current when the usual temperatures are known; without a forecast or a
  /// comparison the rest is absent. Blocks for the requests.
  FeedReading<ClimateOutlook> fetch(Coordinate place, Date today, std::stop_token const& stop = {});

 private:
  using Days = std::vector<DayTemperature>;
  struct Kept {
    std::shared_ptr<ClimateNormals const> normals;
    std::optional<double> bias;
    std::optional<Instant> biasAt;
  };

  FeedQuestion question(std::string url, std::string_view expected, std::chrono::milliseconds life) const;
  std::string archiveUrl(std::string const& place, Date from, Date to) const;
  std::filesystem::path fileOf(std::string const& grid) const;
  void readOnce(std::string const& grid);
  void save(std::string const& grid, Kept const& kept) const;
  void renewBias(std::string const& grid, Days const& forecasts, Date today, std::stop_token const& stop);

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;
  std::map<std::string, Kept> kept_;  ///< by grid
  WatchedFeeds<Days, kMostPlaces> archives_, recent_, forecasts_;
};

}  // namespace nimbara
