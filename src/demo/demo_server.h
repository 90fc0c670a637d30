// Loopback stand-ins of the outside services in one server, so that the whole program runs without any
// network. Owned by whoever started it; stops within a second whatever its clients do. Faults make a service
// misbehave on purpose.
#pragma once

#include "base/result.h"
#include "demo/demo_fault.h"
#include "demo/world/demo_scene.h"
#include "platform/clock.h"

#include <memory>
#include <string>
#include <vector>

namespace nimbara {

class DemoServer {
 public:
  /// Listens on 127.0.0.1; port 0 takes a free one. `scene` may be null. The error is a sentence.
  static Result<std::unique_ptr<DemoServer>, std::string> start(Clock const& clock,
                                                                std::vector<DemoFault> faults, int port = 0,
                                                                DemoScene const* scene = nullptr);
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
