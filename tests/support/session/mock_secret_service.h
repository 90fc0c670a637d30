// A keyring on a test's bus, as GNOME's and KDE's show themselves.
#pragma once

#include "support/session/private_bus.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara::test {

struct KeyringScript {
  bool isLocked = false;
  bool hasCollection = true;     ///< a default one
  bool asksUser = false;         ///< before it makes an item
  std::string createError = {};  ///< the name of the error that CreateItem answers with
};

class MockSecretService {
 public:
  explicit MockSecretService(PrivateBus const& bus, KeyringScript script = {});
  ~MockSecretService();

  void lock(bool isLocked);
  /// What is kept, with label and attributes: "label|id|secret".
  std::vector<std::string> items();
  /// How often somebody wanted the user to be asked.
  int prompts() const { return prompts_; }

 private:
  using Attributes = std::map<std::string, std::string>;
  using Properties = std::map<std::string, sdbus::Variant>;
  using Secret =
      sdbus::Struct<sdbus::ObjectPath, std::vector<std::uint8_t>, std::vector<std::uint8_t>, std::string>;
  using Paths = std::vector<sdbus::ObjectPath>;
  struct Item {
    std::string label;
    Attributes attributes;
    Secret secret;
    std::unique_ptr<sdbus::IObject> object;
    bool isDeleted = true;
  };

  void describeService();
  void describeCollection();
  Paths create(Properties const& properties, Secret const& secret);
  void describeItem(sdbus::ObjectPath const& path, Item& item);

  KeyringScript script_;
  std::mutex mutex_;
  std::atomic<int> prompts_ = 0;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::map<std::string, Item> items_;
  std::unique_ptr<sdbus::IObject> service_;
  std::unique_ptr<sdbus::IObject> collection_;
};

}  // namespace nimbara::test
