// The program's name on the session's bus: asked for once, given to one process, and free again when that
// ends.
#pragma once

#include "platform/linux/dbus/application_object.h"
#include "platform/linux/dbus/bus_thread.h"
#include "platform/session/application_instance.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace nimbara {

class BusApplication final : public ApplicationInstance {
 public:
  explicit BusApplication(std::string const& sessionBus);
  ~BusApplication() override;

  InstanceStanding standing(std::chrono::milliseconds patience) override;
  void setListener(Listener listener) override;

 private:
  void begin(sdbus::IConnection& connection);
  void end();
  /// The first answer counts.
  void stand(InstanceStanding standing);
  void called(ApplicationCall call);

  std::mutex mutex_;  ///< of the standing
  std::condition_variable changed_;
  std::optional<InstanceStanding> standing_;
  /// Held while telling, so that a listener that was replaced is not running any more.
  std::mutex listenerMutex_;
  Listener listener_;
  std::vector<ApplicationCall> waiting_;  ///< until somebody listens
  std::unique_ptr<sdbus::IObject> object_;
  std::unique_ptr<sdbus::IProxy> bus_;
  std::optional<BusThread> thread_;
};

}  // namespace nimbara
