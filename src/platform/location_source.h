// The port through which the system learns where it is, once or for as long as it wants to know. A source
// asks the desktop's location service and never guesses: what the service does not say is an error.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace nimbara {

struct LocationFix {
  Coordinate coordinate;
  double accuracyMetres = 0;
  Instant time;

  bool operator==(LocationFix const&) const = default;
};

struct LocationError {
  enum class Kind { unavailable, denied, timedOut, cancelled };
  Kind kind = Kind::unavailable;
  std::string message;  ///< a sentence for people, without a full stop
};

class LocationSource {
 public:
  virtual ~LocationSource() = default;
  /// To the accuracy of a city. Blocks for at most `timeout`.
  virtual Result<LocationFix, LocationError> locate(std::chrono::milliseconds timeout,
                                                    std::stop_token stop = {}) = 0;

  using Moved = std::function<void(LocationFix const&)>;
  /// Tells where the device is, and again whenever it has moved by `metres`, on the caller's thread. Blocks
  /// until `stop` or until the service ends it; gives which.
  virtual LocationError follow(std::uint32_t metres, Moved const& moved, std::stop_token stop) = 0;
};

}  // namespace nimbara
