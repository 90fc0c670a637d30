// The object of the weather in the session: places, the present, warnings and the nowcast as the face knows
// them, and signals when they change. Lives on the connection's thread.
#pragma once

#include "platform/linux/dbus/service/call_gate.h"
#include "platform/session/session_service.h"

#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <vector>

namespace nimbara {

inline constexpr char kServiceName[] = "io.github.nimbara.Nimbara.Service";
inline constexpr char kServicePath[] = "/io/github/nimbara/Nimbara/Service";
/// Of the interface; grows when something is added.
inline constexpr std::uint32_t kServiceVersion = 1;

class WeatherObject {
 public:
  WeatherObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate);

  void announce(std::vector<WarningNews> const& news);

 private:
  void describeMethods();
  void describeSignals();
  void describeProperties();
  /// Signals those that are others than the last ones.
  void tellProperties();

  ServiceFace& face_;
  CallGate& gate_;
  ServiceProperties told_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara
