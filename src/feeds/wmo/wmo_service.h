// The official warnings of the world from the WMO Severe Weather Information Centre: those that it places at
// a point, and those of the point's country that have no area. Owned by the application, which lends it the
// store of the messages. Any thread may ask; one request at a time is on its way to the centre. Judges
// nothing but what a warning's area is; never throws.
#pragma once

#include "base/geodesy.h"
#include "feeds/cap/cap_message.h"
#include "feeds/wmo/wmo_directory.h"
#include "feeds/wmo/wmo_rows.h"

#include <map>
#include <mutex>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class WmoService {
 public:
  /// A country's list serves all of its places for so long.
  static constexpr std::chrono::minutes kListLife{10};
  static constexpr std::chrono::minutes kRestAfterFailure{1};
  /// A centre that cannot be reached, or is silent, keeps no further place waiting.
  static constexpr std::chrono::seconds kRestWhenAway{30};
  static constexpr std::size_t kRowsOfAPage = 1000;
  static constexpr std::size_t kMostPages = 5;

  struct Options {
    std::string baseUrl;              ///< "https://severeweather.wmo.int"
    std::filesystem::path directory;  ///< of what is kept; empty: nothing outlives the process
  };

  WmoService(HttpClient& http, Clock const& clock, CapStore& documents, Options options);

  /// `countryCode` is that of ISO 3166-1; empty on the open sea. Blocks for its requests. A warning that is
  /// placed at the point is listed even when its message cannot be fetched: then of what its row tells, and
  /// the list is incomplete.
  CapListing fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop = {});

 private:
  struct CountryList {
    std::vector<WmoRow> rows;
    std::optional<ServiceFailure> failure;
    std::optional<Instant> askedAt;
  };
  enum class Area {
    unknown,
    unclear,  ///< not in the message; the centre has not told whether it has drawn one
    none,
    drawn
  };
  struct Judgement {
    Area area = Area::unknown;
    int failures = 0;  ///< to fetch the message
  };

  Result<WmoRows, ServiceFailure> rows(std::string const& pathAndQuery, std::stop_token const& stop);
  CountryList const& listOf(std::string const& country, Instant now, std::stop_token const& stop);
  CountryList asked(std::string const& member, std::stop_token const& stop);
  void noteWarnings(std::vector<WmoRow> const& rows, std::string const& country);
  void addHits(std::vector<WmoRow> const& hits, CapListing& listing, std::stop_token const& stop);
  void addUnplaced(std::vector<WmoRow const*> rows, CapListing& listing, std::stop_token const& stop);
  void sortForLook(std::vector<WmoRow const*>& rows) const;
  std::vector<std::string> judge(std::vector<WmoRow const*> const& rows, CapDocuments const& messages);
  void askForAreas(std::span<std::string const> documents, std::stop_token const& stop);
  Area areaOf(std::string const& document) const;
  std::optional<std::string> addressOf(std::string_view document) const;
  CapDocument messageOf(CapDocuments const& messages, std::string const& document) const;
  CapDocuments fetched(std::vector<std::string> const& addresses, std::stop_token const& stop);
  void add(CapListing& listing, WmoRow const& row, std::string const& document, CapDocument message,
           bool isHit) const;

  HttpClient& http_;
  Clock const& clock_;
  CapStore& documents_;
  std::string baseUrl_;

  std::mutex turn_;  // of all below, and of the centre
  WmoDirectory directory_;
  std::map<std::string, CountryList> lists_;
  std::map<std::string, Judgement, std::less<>> judgements_;  ///< by document, which never changes
  std::optional<std::chrono::steady_clock::time_point> areasRestUntil_;
  std::optional<std::chrono::steady_clock::time_point> awayUntil_;
  ServiceFailure away_;  ///< what is said until then
};

}  // namespace nimbara
