// The warnings in force at a place from a FOSS Public Alert Server, which gathers the messages of issuers all
// over the world and is the only such source that says for which countries it has none. Keeps what it learned
// of countries; the messages are the store's. Never throws. Any thread may ask: the server is asked one
// question at a time.
#pragma once

#include "base/geodesy.h"
#include "feeds/cap/cap_message.h"
#include "feeds/cap/cap_store.h"
#include "feeds/fpas/fpas_countries.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <filesystem>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

class FpasService {
 public:
  struct Options {
    std::string baseUrl;              ///< "https://alerts.kde.org"
    std::filesystem::path directory;  ///< of what it knows of countries; empty: nothing outlives the process
  };

  /// `documents` must outlive the service.
  FpasService(HttpClient& http, Clock const& clock, CapStore& documents, Options options);

  /// Messages whose bounding boxes have the place in them: the server has drawn the areas of codes into them,
  /// so their polygons tell whether the place is meant. Without any of the place's own country the list is
  /// blind, or fails, where the server does not read that country's feeds or may not get anything from them.
  CapListing fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop = {});

 private:
  std::vector<std::string> addresses(Coordinate place, CapListing& listing, std::stop_token const& stop);

  HttpClient& http_;
  CapStore& documents_;
  std::string baseUrl_;
  std::mutex turn_;
  FpasCountries countries_;  ///< in the asker's turn
};

}  // namespace nimbara
