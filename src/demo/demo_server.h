// Loopback stand-ins of the outside services in one server, so that the whole program runs without any
// network. Owned by whoever started it; stops within a second whatever its clients do. Faults make a service
// misbehave on purpose.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"
#include "platform/clock.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class DemoService { openMeteo, openMeteoGeocoding };

template <>
inline constexpr auto enumNames<DemoService> =
    std::to_array<std::string_view>({"openMeteo", "openMeteoGeocoding"});
static_assert(enumNamesComplete(DemoService::openMeteoGeocoding));

struct DemoFault {
  /// 500 with a page of HTML, no answer, an answer that is no data, a connection that breaks in the middle.
  enum class Kind { status500, timeout, garbage, drop };

  DemoService service = DemoService::openMeteo;
  Kind kind = Kind::status500;

  bool operator==(DemoFault const&) const = default;
};

template <>
inline constexpr auto enumNames<DemoFault::Kind> =
    std::to_array<std::string_view>({"500", "timeout", "garbage", "drop"});
static_assert(enumNamesComplete(DemoFault::Kind::drop));

/// "openMeteo=500"; the error is a sentence that names what is wrong.
Result<DemoFault, std::string> parseDemoFault(std::string_view text);

class DemoServer {
 public:
  /// Listens on 127.0.0.1; port 0 takes a free one. The error is a sentence.
  static Result<std::unique_ptr<DemoServer>, std::string> start(Clock const& clock,
                                                                std::vector<DemoFault> faults, int port = 0);
  ~DemoServer();
  DemoServer(DemoServer const&) = delete;
  DemoServer& operator=(DemoServer const&) = delete;

  /// "http://127.0.0.1:43210".
  std::string const& baseUrl() const { return baseUrl_; }

 private:
  struct Running;
  explicit DemoServer(std::unique_ptr<Running> running);

  std::unique_ptr<Running> running_;
  std::string baseUrl_;
};

}  // namespace nimbara
