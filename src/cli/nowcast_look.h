// The nowcast of a place, asked for beside a command's own question and waited for only so long. A place that
// no source covers costs nothing.
#pragma once

#include "app/services/task_runner.h"
#include "feeds/nowcast/nowcast_service.h"

#include <chrono>
#include <future>
#include <optional>
#include <stop_token>

namespace nimbara {

class NowcastLook {
 public:
  /// Begins to ask. The service outlives the look.
  NowcastLook(NowcastService& service, Coordinate place);
  ~NowcastLook();

  /// What is known once the sources have answered, or `patience` is over, or `stop` was requested. Once.
  NowcastReading answer(std::chrono::milliseconds patience, std::stop_token const& stop);

 private:
  std::stop_source asking_;
  std::future<NowcastReading> answered_;
  std::optional<ThreadPool> pool_;
};

}  // namespace nimbara
