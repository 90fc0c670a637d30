#include "feeds/climate/climate_service.h"

#include "base/files/file.h"
#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/kept_record.h"

#include <cmath>

namespace nimbara {

namespace {

struct KeptFile {
  ClimateNormals normals;
  std::optional<double> bias;
  std::optional<Instant> biasAt;
};

}  // namespace

template <>
inline constexpr auto jsonFields<KeptFile> = FieldList{
    field("normals", &KeptFile::normals), field("bias", &KeptFile::bias), field("biasAt", &KeptFile::biasAt)};

namespace {

using std::chrono::days;

constexpr days kForEver{36'500};
/// What is compared with the past forecasts; the newest days of the archive are not there yet.
constexpr days kCompared{92};
constexpr days kArchiveDelay{7};
constexpr Date kFirst{std::chrono::year(1991) / 1 / 1};
constexpr Date kLast{std::chrono::year(2020) / 12 / 31};

/// The cells of the archive lie a quarter of a degree apart.
std::string gridOf(Coordinate place) {
  return fixedDecimal(std::round(place.latitude * 4) / 4, 2) + "," +
         fixedDecimal(std::round(place.longitude * 4) / 4, 2);
}

std::string placeQuery(std::string const& grid) {
  std::size_t const comma = grid.find(',');
  return "latitude=" + grid.substr(0, comma) + "&longitude=" + grid.substr(comma + 1);
}

constexpr std::string_view kDaily = "&daily=temperature_2m_max,temperature_2m_min&timezone=auto";

std::string keyPart(std::string const& key) {
  return key.empty() ? std::string() : "&apikey=" + percentEncoded(key);
}

}  // namespace

std::optional<double> ClimateOutlook::anomaly() const {
  if (!usual || !today || !bias) return std::nullopt;
  return *today - *bias - usual->p50;
}

std::optional<ClimateWord> ClimateOutlook::word() const {
  auto const difference = anomaly();
  return difference ? std::optional(climateWord(*usual, usual->p50 + *difference)) : std::nullopt;
}

ClimateService::ClimateService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedQuestion ClimateService::question(std::string url, std::string_view expected,
                                      std::chrono::milliseconds life) const {
  constexpr std::size_t kLargestBody = std::size_t{4} << 20;
  constexpr std::chrono::seconds kTimeout{25};
  FeedQuestion question;
  question.request.url = std::move(url);
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = expected;
  question.life = life;
  return question;
}

/// One kind of reanalysis for all years: the usual choice changes its model on the way.
std::string ClimateService::archiveUrl(std::string const& place, Date from, Date to) const {
  return options_.archiveBase + "/v1/archive?" + place + "&start_date=" + formatDate(from) +
         "&end_date=" + formatDate(to) + std::string(kDaily) + "&models=era5" + keyPart(options_.archiveKey);
}

FeedReading<ClimateOutlook> ClimateService::fetch(Coordinate place, Date today, std::stop_token const& stop) {
  if (!isValid(place)) return placelessReading<ClimateOutlook>();
  std::lock_guard const turn(turn_);
  std::string const grid = gridOf(place);
  std::string const at = placeQuery(grid);
  readOnce(grid);
  FeedReading<ClimateOutlook> reading{FeedState::current, {grid, today, {}, {}, {}}, clock_.now(), {}, {}};
  if (!kept_.contains(grid)) {
    auto const archive = archives_.of(grid).read(
        http_, clock_, question(archiveUrl(at, kFirst, kLast), "archive of temperatures", kForEver),
        parseDayTemperatures, stop);
    if (!archive.isCurrent()) {
      return {archive.state, std::move(reading.data), archive.checkedAt, archive.failedSince,
              archive.failure};
    }
    kept_[grid].normals = std::make_shared<ClimateNormals const>(climateNormals(archive.data));
    save(grid, kept_[grid]);
  }
  auto const forecast = forecasts_.of(grid).read(
      http_, clock_,
      question(options_.forecastBase + "/v1/forecast?" + at + std::string(kDaily) + "&past_days=" +
                   std::to_string(kCompared.count()) + "&forecast_days=2" + keyPart(options_.forecastKey),
               "daily forecast", kForecastLife),
      parseDayTemperatures, stop);
  if (forecast.isCurrent()) {
    renewBias(grid, forecast.data, today, stop);
    for (DayTemperature const& day : forecast.data)
      if (day.date == today) reading.data.today = day.mean;
  }
  reading.data.normals = kept_[grid].normals;
  reading.data.usual = climateOf(*reading.data.normals, today);
  reading.data.bias = kept_[grid].bias;
  return reading;
}

void ClimateService::renewBias(std::string const& grid, Days const& forecasts, Date today,
                               std::stop_token const& stop) {
  Kept& kept = kept_[grid];
  if (kept.biasAt && isYounger(*kept.biasAt, kBiasLife, clock_.now())) return;
  auto const end = std::chrono::sys_days(today) - kArchiveDelay;
  auto const archive = recent_.of(grid).read(
      http_, clock_,
      question(archiveUrl(placeQuery(grid), Date(end - kCompared + kArchiveDelay), Date(end)),
               "archive of temperatures", kBiasLife),
      parseDayTemperatures, stop);
  if (!archive.isCurrent()) return;
  kept.bias = climateBias(forecasts, archive.data);
  kept.biasAt = clock_.now();
  save(grid, kept);
}

std::filesystem::path ClimateService::fileOf(std::string const& grid) const {
  return options_.folder / (grid + ".json");
}

void ClimateService::readOnce(std::string const& grid) {
  constexpr std::size_t kLargestFile = std::size_t{1} << 20;
  if (options_.folder.empty() || kept_.contains(grid)) return;
  auto file = keptRecord<KeptFile>(fileOf(grid), kLargestFile);
  if (!file || file->normals.size() != kClimateDays) return;
  kept_[grid] = {std::make_shared<ClimateNormals const>(std::move(file->normals)), file->bias, file->biasAt};
}

/// A disk that cannot be written to costs the request again after a restart.
void ClimateService::save(std::string const& grid, Kept const& kept) const {
  if (options_.folder.empty()) return;
  std::ignore =
      writeFileAtomically(fileOf(grid), encodeJson(KeptFile{*kept.normals, kept.bias, kept.biasAt}));
}

}  // namespace nimbara
