// The model's fields over what a map shows, asked for in one request a grid and hour. Keeps what was read on
// disk and the last grids in memory, and never raises an error.
#pragma once

#include "feeds/imagery/imagery_requests.h"
#include "feeds/imagery/model_fields.h"
#include "feeds/imagery/tile_cache.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace nimbara {

using ModelFieldsReading = Result<std::shared_ptr<ModelFields const>, ServiceFailure>;

class ModelFieldService {
 public:
  static constexpr std::chrono::minutes kRestAfterFailure{5};
  static constexpr std::size_t kMostInMemory = 8;

  struct Options {
    std::string openMeteoBase;          ///< "https://api.open-meteo.com"
    std::string openMeteoKey;           ///< empty for the free service
    std::filesystem::path folder = {};  ///< empty: nothing outlives the process
  };

  ModelFieldService(ImageryRequests& requests, Clock const& clock, Options options);

  /// Blocks for the request where one is due. Any thread; one question at a time.
  ModelFieldsReading fetch(ModelGrid const& grid, std::stop_token const& stop = {});

 private:
  ModelFieldsReading ask(ModelGrid const& grid, std::string const& key, std::stop_token const& stop);

  ImageryRequests& requests_;
  Clock const& clock_;
  Options options_;
  TileCache cache_;
  std::mutex turn_;
  std::vector<std::pair<std::string, std::shared_ptr<ModelFields const>>> kept_;  ///< the newest last
  std::optional<ServiceFailure> failure_;
  std::optional<std::chrono::steady_clock::time_point> restsUntil_;
};

}  // namespace nimbara
