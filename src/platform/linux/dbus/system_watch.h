// Resume and network from logind and NetworkManager on the system's bus, and from the kernel's routes where
// NetworkManager is not there.
#pragma once

#include "platform/linux/dbus/bus.h"
#include "platform/linux/network/network_notices.h"
#include "platform/power_and_network.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace nimbara {

class SystemWatch final : public PowerAndNetwork {
 public:
  /// The system's own bus for an empty address.
  SystemWatch(std::string const& systemBus, Listener listener);
  ~SystemWatch() override;

  std::vector<std::string> missing() const override { return missing_; }

 private:
  void connect(std::string const& systemBus);
  bool hasOwner(char const* service);
  void hearLogind();
  void hearNetworkManager();
  void networkStateIs(std::uint32_t state);
  void run(std::stop_token const& stop);
  /// False when the bus has gone.
  bool handleBus();

  Listener listener_;
  std::vector<std::string> missing_;
  WakeUp wakeUp_;
  NetworkNotices notices_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IProxy> logind_;
  std::unique_ptr<sdbus::IProxy> networkManager_;
  bool managed_ = false;  // NetworkManager tells of the network
  std::uint32_t networkState_ = 0;
  std::jthread thread_;
};

}  // namespace nimbara
