// The program's objects under the service's name on the session's bus. A name that another process has is
// waited for; without a bus there are no objects, and nothing is missed.
#pragma once

#include "platform/linux/dbus/bus_thread.h"
#include "platform/linux/dbus/service/search_objects.h"
#include "platform/linux/dbus/service/weather_object.h"
#include "platform/session/session_service.h"

#include <memory>
#include <optional>
#include <string>

namespace nimbara {

class BusSessionService final : public SessionService {
 public:
  /// The session's own bus for an empty address.
  BusSessionService(std::string const& sessionBus, ServiceFace& face);
  ~BusSessionService() override;

  void announce(std::vector<WarningNews> news) override;

 private:
  struct Objects;

  void begin(sdbus::IConnection& connection);

  ServiceFace& face_;
  std::unique_ptr<Objects> objects_;  ///< the thread's
  std::unique_ptr<sdbus::IProxy> bus_;
  std::optional<BusThread> thread_;
};

}  // namespace nimbara
