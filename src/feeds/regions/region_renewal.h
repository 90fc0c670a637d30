// Looks once a month for a newer edition of the outlines of warning regions and fetches it where a place of
// the user's is in a country that they tell of. Owned by a long-lived program; several may run at once, since
// the file that says when to look again is written before looking. Any thread may ask.
#pragma once

#include "feeds/regions/region_update.h"
#include "platform/clock.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace nimbara {

class RegionRenewal {
 public:
  /// `baseUrl` is scheme and host of the service that keeps the editions; an empty data directory means
  /// never.
  RegionRenewal(HttpClient& http, Clock const& clock, std::string baseUrl,
                std::filesystem::path dataDirectory);

  /// Whether the time to look has come and any of the places needs it.
  bool isDue(std::span<Coordinate const> places) const;

  /// Looks, and installs an edition that is newer than the one in use. After a failure the next look is a day
  /// later. Nothing when there is nothing newer; the error is a sentence without a full stop.
  Result<std::optional<RegionUpdate>, std::string> run(std::stop_token const& stop);

 private:
  std::optional<Instant> dueAt() const;
  void lookAgainAt(Instant when) const;

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::filesystem::path folder_;
  mutable std::mutex running_;
};

}  // namespace nimbara
