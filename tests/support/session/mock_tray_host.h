// A watcher of trays on a test's bus, and the host behind it: keeps who announced itself, reads what it
// shows, and lets the test play the person at the panel.
#pragma once

#include "support/session/private_bus.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara::test {

class MockTrayHost {
 public:
  using Id = std::int32_t;
  using Properties = std::map<std::string, sdbus::Variant>;
  using Entry = sdbus::Struct<Id, Properties, std::vector<sdbus::Variant>>;
  using Pixmap = sdbus::Struct<std::int32_t, std::int32_t, std::vector<std::uint8_t>>;

  explicit MockTrayHost(PrivateBus const& bus, bool hasHost = true);
  ~MockTrayHost();

  /// Hears nothing any more; its library throws when the bus ends under it.
  void leave() { connection_->leaveEventLoop(); }
  /// The bus name of the one that announced itself; empty after a long time without.
  std::string waitForItem();
  void setHost(bool hasHost);
  /// Instead of whether there is a host, a text.
  void answerWrongly();

  sdbus::Variant property(char const* name);
  std::vector<Entry> menu();
  /// The id of the menu's item of that label; -1 for none.
  Id itemLabelled(std::string const& label);
  void click(std::string const& activationToken = {});
  void choose(Id id);
  /// To whatever the test wants to call there.
  std::unique_ptr<sdbus::IProxy> proxy(char const* path);

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hasHost_;
  bool answersWrongly_ = false;
  std::string item_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara::test
