// The directory of the WMO Severe Weather Information Centre: under which number it lists a country's
// warnings, and whose warnings it has at all. Asked for once a week, kept in a file, which processes may
// share; until it was had, what the program knows without it counts. Owned by the centre's service, which
// serialises its calls; never throws.
#pragma once

#include "feeds/wmo/wmo_sources.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/service_failure.h"

#include <filesystem>
#include <stop_token>

namespace nimbara {

/// What is kept of it. Times are those of the answers; never: built in.
struct WmoDirectoryRecord {
  std::optional<Instant> membersAt;
  WmoMembers members;
  std::optional<Instant> sourcesAt;
  std::vector<std::string> countries;                ///< with a source that operates, sorted
  std::map<std::string, Instant, std::less<>> seen;  ///< when a warning of a country was last listed
};

template <>
inline constexpr auto jsonFields<WmoDirectoryRecord> = FieldList{
    field("membersAt", &WmoDirectoryRecord::membersAt), fieldOr("members", &WmoDirectoryRecord::members),
    field("sourcesAt", &WmoDirectoryRecord::sourcesAt), fieldOr("countries", &WmoDirectoryRecord::countries),
    fieldOr("seen", &WmoDirectoryRecord::seen)};

class WmoDirectory {
 public:
  static constexpr std::chrono::days kLife{7};
  static constexpr std::chrono::hours kRestAfterFailure{1};
  /// For how long a warning shows that the centre has those of its country.
  static constexpr std::chrono::days kSeenLife{30};

  /// With an empty `folder` it lives as long as the process.
  WmoDirectory(HttpClient& http, Clock const& clock, std::string baseUrl,
               std::filesystem::path const& folder);

  /// Blocks for two requests where both lists are due.
  void renew(std::stop_token const& stop);

  /// The country's number in the centre's lists; empty for a country that is no member, nothing where that is
  /// not known.
  std::optional<std::string> memberNumber(std::string_view country) const;
  bool isMirrored(std::string_view country) const;
  void noteWarningOf(std::string_view country);

  std::optional<ServiceFailure> const& failure() const { return failure_; }

 private:
  bool isDue(std::optional<Instant> const& at) const;
  template <class Parse, class T>
  bool ask(std::string const& path, Parse const& parse, T& value, std::optional<Instant>& at,
           std::stop_token const& stop);
  void readKept();
  void keep() const;

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::filesystem::path file_;
  WmoDirectoryRecord record_;
  std::optional<ServiceFailure> failure_;  ///< of the last renewal
  std::optional<std::chrono::steady_clock::time_point> restsUntil_;
};

}  // namespace nimbara
