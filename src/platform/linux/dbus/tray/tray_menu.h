// A menu on the bus as tray hosts read it (com.canonical.dbusmenu): one level, an entry for each item.
// Whatever a host asks for is looked up, never trusted: what is not there is skipped or refused.
#pragma once

#include "platform/session/tray.h"

#include <functional>
#include <map>
#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara {

inline constexpr char kTrayMenuPath[] = "/TrayMenu";

class TrayMenu {
 public:
  /// Told the key of an item that was chosen, on the connection's thread.
  using Chosen = std::function<void(std::string const& key)>;

  TrayMenu(sdbus::IConnection& connection, Chosen chosen);

  void show(std::vector<TrayMenuItem> items);

 private:
  using Id = std::int32_t;
  using Names = std::vector<std::string>;
  using Properties = std::map<std::string, sdbus::Variant>;
  using Entry = sdbus::Struct<Id, Properties, std::vector<sdbus::Variant>>;
  using GroupProperties = sdbus::Struct<Id, Properties>;
  using Event = sdbus::Struct<Id, std::string, sdbus::Variant, std::uint32_t>;

  void describe();
  void describeEvents();
  bool knows(Id id) const { return id >= 0 && static_cast<std::size_t>(id) <= items_.size(); }
  Properties propertiesOf(Id id, Names const& wanted) const;
  Entry layout(Id parent, std::int32_t depth, Names const& wanted) const;
  std::vector<GroupProperties> groupProperties(std::vector<Id> const& ids, Names const& wanted) const;
  void happened(Id id, std::string const& event) const;

  Chosen chosen_;
  std::vector<TrayMenuItem> items_;
  std::uint32_t revision_ = 1;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara
