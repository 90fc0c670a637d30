// Makes the file of warning regions from the outlines that MeteoAlarm publishes. A file that is there is
// replaced only by one that was read to its end and is no poorer by far.
#pragma once

#include "base/result.h"
#include "platform/http/http_client.h"
#include "regions/region_map.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct RegionUpdate {
  std::size_t regions = 0;
  std::map<std::string, std::size_t> byCountry;
  std::size_t skipped = 0;    ///< features that are no region
  std::size_t fileBytes = 0;  ///< of the file that was written
  std::string edition;        ///< the name of the document, where it was fetched
};

struct RegionUpdateOptions {
  RegionMap const* older = nullptr;  ///< what the new edition lacks is taken from it
  std::string newerThan;             ///< a day: an edition of it or before is not fetched
};

/// Fetches the newest of the dated documents that the service keeps. No regions and the name of the document
/// when that is not new. The error is a sentence that says why nothing has changed, without a full stop.
Result<RegionUpdate, std::string> updateRegions(HttpClient& http, std::string const& baseUrl,
                                                std::filesystem::path const& file,
                                                RegionUpdateOptions const& options = {},
                                                std::stop_token const& stop = {});

/// The same from these documents, the regions of all of them together.
Result<RegionUpdate, std::string> installRegions(std::vector<std::string_view> const& documents,
                                                 std::filesystem::path const& file,
                                                 RegionMap const* older = nullptr,
                                                 std::string const& edition = {});

/// Where in the application's folder of data the file lies.
std::filesystem::path regionFileIn(std::filesystem::path const& dataDirectory);

}  // namespace nimbara
