// Waits on a fixed port of this computer for the browser to come back from a service's consent page. Only the
// browser's own request with the right `state` counts; whatever else arrives is answered and passed over.
#pragma once

#include "base/result.h"

#include <chrono>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// What the service has sent the browser back with.
struct ConsentReturn {
  enum class Kind {
    code,
    denied,  ///< by the user, or by the service for the reason in `value`
    foreign  ///< another path, no state or a wrong one
  };

  Kind kind = Kind::foreign;
  std::string value;

  bool operator==(ConsentReturn const&) const = default;
};

/// Of the first line of a request: "GET /nimbara?state=…&code=… HTTP/1.1". Pure; any bytes may be given.
ConsentReturn consentReturn(std::string_view request, std::string_view path, std::string_view state);

/// Why there is no code.
struct ConsentFailure {
  enum class Kind {
    denied,  ///< by the user, or by the service for the reason in `reason`
    late,    ///< nobody came in time
    stopped
  };

  Kind kind = Kind::late;
  std::string reason = {};

  bool operator==(ConsentFailure const&) const = default;
};

class ConsentListener {
 public:
  /// The error is a clause: the port is taken.
  static Result<ConsentListener, std::string> open(std::uint16_t port);
  ConsentListener(ConsentListener&& other) noexcept;
  ConsentListener(ConsentListener const&) = delete;
  ConsentListener& operator=(ConsentListener const&) = delete;
  ~ConsentListener();

  /// `done` and `failed` are what the browser shows, in plain text. A browser that sends nothing is waited
  /// for a second, the next one meanwhile not.
  Result<std::string, ConsentFailure> wait(std::string_view path, std::string_view state,
                                           std::string_view done, std::string_view failed,
                                           std::chrono::milliseconds limit,
                                           std::stop_token const& stop) const;
  std::uint16_t port() const;

 private:
  explicit ConsentListener(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;
};

}  // namespace nimbara
