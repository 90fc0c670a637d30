// Where clouds are on the whole globe, as satellites see them in the infrared: the newest picture that a
// supplier lists, of the first whose picture is of use. Asks at most once an hour, keeps the last picture,
// and never raises an error.
#pragma once

#include "base/enum_names.h"
#include "feeds/imagery/imagery_requests.h"
#include "feeds/imagery/tile_cache.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// In the order in which they are asked.
enum class CloudSource { nowCoast, eumetView };
template <>
inline constexpr auto enumNames<CloudSource> = std::to_array<std::string_view>({"nowCoast", "eumetView"});
static_assert(enumNamesComplete(CloudSource::eumetView));

/// Plate carrée from 180° W to 180° E, between the northern and the southern limit of what is seen.
struct CloudPicture {
  static constexpr double kLimit = 72.7;  ///< degrees
  static constexpr int kWidth = 2048, kHeight = 827;
  /// Clouds of so long ago are elsewhere by now.
  static constexpr std::chrono::hours kLife{6};

  CloudSource source = CloudSource::nowCoast;
  Instant time;
  std::shared_ptr<std::string const> bytes;  ///< never null; what the bytes show is nobody's promise
};

struct CloudMiss {
  CloudSource source = CloudSource::nowCoast;
  ServiceFailure failure;

  bool operator==(CloudMiss const&) const = default;
};

struct CloudReading {
  std::optional<CloudPicture> picture;  ///< the last that there was, perhaps hours ago
  std::vector<CloudMiss> misses;        ///< of the last question, of those before the one that answered
  std::optional<Instant> checkedAt;     ///< when somebody last answered
};

class CloudService {
 public:
  static constexpr std::chrono::hours kRest{1};
  static constexpr std::chrono::minutes kRestWithoutNetwork{1};
  static constexpr std::size_t kLargestList = std::size_t{8} << 20, kLargestPicture = std::size_t{4} << 20;

  struct Options {
    std::string nowCoastBase;           ///< "https://nowcoast.noaa.gov"
    std::string eumetViewBase;          ///< "https://view.eumetsat.int"
    std::filesystem::path folder = {};  ///< empty: nothing outlives the process
  };
  /// Whether the bytes are a picture that shows something. Called on the thread of who asks.
  using Check = std::function<bool(std::string_view)>;

  CloudService(ImageryRequests& requests, Clock const& clock, Options options);

  /// Blocks for what is due. Any thread; one question at a time.
  CloudReading fetch(Check const& isUsable, std::stop_token const& stop = {});

 private:
  Result<CloudPicture, ServiceFailure> ask(CloudSource source, Check const& isUsable,
                                           std::stop_token const& stop);
  Result<std::string, ServiceFailure> bytesOf(std::string const& address, std::stop_token const& stop);

  ImageryRequests& requests_;
  Clock const& clock_;
  Options options_;
  TileCache cache_;
  std::mutex turn_;
  CloudReading kept_;
  std::optional<std::chrono::steady_clock::time_point> restsUntil_;
};

}  // namespace nimbara
