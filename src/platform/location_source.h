// The port through which the system learns where it is. A source asks the desktop's location service once a
// call and never guesses: what the service does not say is an error.
#pragma once

#include "base/geodesy.h"
#include "base/instant.h"
#include "base/result.h"

#include <chrono>
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
};

}  // namespace nimbara
