// What a public alert server reads for each country, asked at most every six hours and kept in a folder.
// Belongs to one service, which serialises its calls; never throws.
#pragma once

#include "feeds/fpas/fpas_lists.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/service_failure.h"

#include <filesystem>
#include <map>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// What is kept of a country.
struct FpasCountryNote {
  std::optional<Instant> checkedAt;  ///< when the server last said it
  std::vector<FpasFeed> feeds;
};

class FpasCountries {
 public:
  /// `url` takes a country's code at its end. An empty `directory` keeps nothing beyond the process.
  FpasCountries(HttpClient& http, Clock const& clock, std::string url, std::filesystem::path directory);

  /// Whether an empty list of warnings means that a country has none.
  struct Verdict {
    bool isBlind = false;                   ///< no operating feed of the country is read
    std::optional<ServiceFailure> failure;  ///< nobody can say whether its feeds work
  };

  /// `country` is ISO 3166-1 in capital letters.
  Verdict judge(std::string const& country, std::stop_token const& stop);

 private:
  struct Known {
    FpasCountryNote note;
    std::optional<Instant> failedAt;
    std::optional<ServiceFailure> failure;
  };

  bool isDue(Known const& known) const;
  void ask(std::string const& country, Known& known, std::stop_token const& stop) const;
  std::filesystem::path fileOf(std::string const& country) const;

  HttpClient& http_;
  Clock const& clock_;
  std::string url_;
  std::filesystem::path directory_;
  std::map<std::string, Known> known_;
};

}  // namespace nimbara
