// The days beyond the forecast: asked for while somebody looks at them, for the place that is shown. Owned by
// the engine, which calls it on threads of its own.
#pragma once

#include "app/services/in_use.h"
#include "app/services/task_runner.h"
#include "app/state/outlook_state.h"

#include <functional>
#include <memory>
#include <mutex>

namespace nimbara {

class FeedServices;

class EngineOutlook {
 public:
  EngineOutlook(InUse<FeedServices> feeds, TaskRunner& runner, std::function<void()> publish);

  std::shared_ptr<OutlookState const> state() const;

  /// Asks where that is due, in the background. What was known of another place is no longer shown.
  void look(Place const& place);

 private:
  void keep(OutlookState next);

  InUse<FeedServices> feeds_;
  TaskRunner& runner_;
  std::function<void()> publish_;
  mutable std::mutex mutex_;  // guards the state
  std::shared_ptr<OutlookState const> state_ = std::make_shared<OutlookState>();
};

}  // namespace nimbara
