#include "feeds/regions/region_update.h"

#include "base/files/file.h"
#include "base/json/json_codec.h"
#include "base/text/text.h"

#include <algorithm>
#include <limits>

namespace nimbara {

namespace {

struct ListedFile {
  std::string name;
};

}  // namespace

template <>
inline constexpr auto jsonFields<ListedFile> = FieldList{field("name", &ListedFile::name)};

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kListTimeout = 30s;
constexpr std::chrono::milliseconds kDocumentTimeout = 300s;
constexpr std::size_t kLongestList = std::size_t{1} << 20;
constexpr std::size_t kLongestDocument = std::size_t{128} << 20;
constexpr std::string_view kListPath =
    "/api/v4/projects/meteoalarm-pm-group%2Fdocuments/repository/tree?per_page=100";
constexpr std::string_view kDocumentPath = "/meteoalarm-pm-group/documents/-/raw/master/";

Result<std::string, std::string> fetch(HttpClient& http, HttpRequest const& request, std::string const& what,
                                       std::stop_token const& stop) {
  constexpr int kOk = 200;
  auto answer = http.get(request, stop);
  if (!answer) return std::unexpected(what + " cannot be fetched: " + answer.error().message);
  if (answer->status != kOk)
    return std::unexpected(what + " cannot be fetched: status " + std::to_string(answer->status));
  return std::move(answer->body);
}

/// The documents are named by date, so the last name is the newest; others lie beside them.
std::string newestOf(std::vector<ListedFile> const& files) {
  std::string newest;
  for (ListedFile const& file : files) {
    bool const isOutlines = file.name.starts_with("MeteoAlarm_Geocodes_") && file.name.ends_with(".json");
    if (isOutlines && file.name.find('/') == std::string::npos) newest = std::max(newest, file.name);
  }
  return newest;
}

Result<OutlineReading, std::string> readAll(std::vector<std::string_view> const& documents) {
  OutlineReading all;
  for (std::string_view const document : documents) {
    auto reading = readOutlines(document);
    if (!reading) return std::unexpected("the outlines cannot be read: " + reading.error());
    all.skipped += reading->skipped;
    all.edition = std::max(all.edition, reading->edition);
    std::ranges::move(reading->outlines, std::back_inserter(all.outlines));
  }
  return all;
}

/// Why these outlines must not be used at all.
std::optional<std::string> objectionTo(OutlineReading const& reading) {
  std::size_t const count = reading.outlines.size();
  if (count == 0) return "the outlines contain no regions";
  if (reading.skipped > count) return "most of the outlines could not be read";
  return std::nullopt;
}

/// Why so few regions must not take the place of those that the file has.
std::optional<std::string> objectionTo(std::size_t count, std::filesystem::path const& file) {
  auto const present = RegionMap::open(file);
  if (!present || present->size() <= 2 * count) return std::nullopt;
  return "the new outlines have only " + std::to_string(count) + " of the " +
         std::to_string(present->size()) + " known regions; remove " + file.string() + " to use them anyway";
}

/// "2026-02-20" of "MeteoAlarm_Geocodes_2026_02_20.json"; empty for a name without a day.
std::string dayOf(std::string_view document) {
  constexpr std::size_t kDayLength = 10;
  std::string day(document.substr(0, document.rfind('.')));
  if (day.size() < kDayLength) return {};
  day.erase(0, day.size() - kDayLength);
  std::ranges::replace(day, '_', '-');
  return parseDate(day) ? day : std::string();
}

}  // namespace

std::filesystem::path regionFileIn(std::filesystem::path const& dataDirectory) {
  return dataDirectory.empty() ? dataDirectory : dataDirectory / "regions.map";
}

Result<RegionUpdate, std::string> installRegions(std::vector<std::string_view> const& documents,
                                                 std::filesystem::path const& file, RegionMap const* older,
                                                 std::string const& edition) {
  auto const reading = readAll(documents);
  if (!reading) return std::unexpected(reading.error());
  if (auto const objection = objectionTo(*reading)) return std::unexpected(*objection);
  OutlineSet set = outlineSetOf(reading->outlines);
  set.edition = edition.empty() ? reading->edition : edition;
  if (older != nullptr) complete(set, older->outlines());
  if (auto const objection = objectionTo(set.regions.size(), file)) return std::unexpected(*objection);
  std::string const bytes = regionMapOf(set);
  auto const map = RegionMap::over(bytes);
  if (!map) return std::unexpected("the outlines cannot be packed: " + map.error());
  if (auto const written = writeFileAtomically(file, bytes); !written)
    return std::unexpected(written.error());
  return RegionUpdate{map->size(), map->countByCountry(), reading->skipped, bytes.size(), {}};
}

Result<RegionUpdate, std::string> updateRegions(HttpClient& http, std::string const& baseUrl,
                                                std::filesystem::path const& file,
                                                RegionUpdateOptions const& options,
                                                std::stop_token const& stop) {
  auto const list = fetch(http, {baseUrl + std::string(kListPath), {}, kListTimeout, kLongestList},
                          "the list of outlines", stop);
  if (!list) return std::unexpected(list.error());
  auto const files = decodeJson<std::vector<ListedFile>>(*list);
  if (!files) return std::unexpected("the list of outlines cannot be read: " + files.error().text());
  std::string const newest = newestOf(*files);
  if (newest.empty()) return std::unexpected("the list of outlines is empty");
  std::string const day = dayOf(newest);
  RegionUpdate nothingNew;
  nothingNew.edition = newest;
  if (!options.newerThan.empty() && day <= options.newerThan) return nothingNew;
  HttpRequest const request{
      baseUrl + std::string(kDocumentPath) + percentEncoded(newest), {}, kDocumentTimeout, kLongestDocument};
  auto const document = fetch(http, request, "the outlines " + newest, stop);
  if (!document) return std::unexpected(document.error());
  auto update = installRegions({*document}, file, options.older, day);
  if (update) update->edition = newest;
  return update;
}

}  // namespace nimbara
