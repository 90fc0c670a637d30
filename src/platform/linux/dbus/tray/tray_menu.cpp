#include "platform/linux/dbus/tray/tray_menu.h"

#include <algorithm>
#include <utility>

namespace nimbara {

namespace {

constexpr char kInterface[] = "com.canonical.dbusmenu";
constexpr std::int32_t kRoot = 0;
constexpr std::uint32_t kVersion = 3;

/// Underlines mark keys in labels; a doubled one is itself.
std::string labelOf(std::string const& text) {
  std::string label;
  for (char const letter : text) label += letter == '_' ? std::string("__") : std::string(1, letter);
  return label;
}

sdbus::Error unknownId() {
  return sdbus::Error("org.freedesktop.DBus.Error.InvalidArgs", "there is no such item");
}

}  // namespace

TrayMenu::TrayMenu(sdbus::IConnection& connection, Chosen chosen)
    : chosen_(std::move(chosen)), object_(sdbus::createObject(connection, kTrayMenuPath)) {
  describe();
  describeEvents();
  object_->finishRegistration();
}

void TrayMenu::describe() {
  object_->registerProperty("Version").onInterface(kInterface).withGetter([] { return kVersion; });
  object_->registerProperty("TextDirection").onInterface(kInterface).withGetter([] {
    return std::string("ltr");
  });
  object_->registerProperty("Status").onInterface(kInterface).withGetter([] {
    return std::string("normal");
  });
  object_->registerProperty("IconThemePath").onInterface(kInterface).withGetter([] { return Names(); });
  object_->registerMethod("GetLayout")
      .onInterface(kInterface)
      .implementedAs([this](Id parent, std::int32_t depth, Names const& wanted) {
        return std::tuple(revision_, layout(parent, depth, wanted));
      });
  object_->registerMethod("GetGroupProperties")
      .onInterface(kInterface)
      .implementedAs(
          [this](std::vector<Id> const& ids, Names const& wanted) { return groupProperties(ids, wanted); });
  object_->registerMethod("GetProperty")
      .onInterface(kInterface)
      .implementedAs([this](Id id, std::string const& name) {
        auto const properties = propertiesOf(id, {name});
        if (properties.empty()) throw unknownId();
        return properties.begin()->second;
      });
  object_->registerSignal("LayoutUpdated").onInterface(kInterface).withParameters<std::uint32_t, Id>();
  object_->registerSignal("ItemsPropertiesUpdated")
      .onInterface(kInterface)
      .withParameters<std::vector<GroupProperties>, std::vector<sdbus::Struct<Id, Names>>>();
}

void TrayMenu::describeEvents() {
  object_->registerMethod("Event")
      .onInterface(kInterface)
      .implementedAs([this](Id id, std::string const& event, sdbus::Variant const&, std::uint32_t) {
        happened(id, event);
      });
  object_->registerMethod("EventGroup")
      .onInterface(kInterface)
      .implementedAs([this](std::vector<Event> const& events) {
        std::vector<Id> unknown;
        for (Event const& event : events) {
          if (!knows(event.get<0>())) unknown.push_back(event.get<0>());
          happened(event.get<0>(), event.get<1>());
        }
        return unknown;
      });
  object_->registerMethod("AboutToShow").onInterface(kInterface).implementedAs([](Id) { return false; });
  object_->registerMethod("AboutToShowGroup")
      .onInterface(kInterface)
      .implementedAs([this](std::vector<Id> const& ids) {
        std::vector<Id> unknown;
        std::ranges::copy_if(ids, std::back_inserter(unknown), [this](Id id) { return !knows(id); });
        return std::tuple(std::vector<Id>(), unknown);
      });
}

void TrayMenu::show(std::vector<TrayMenuItem> items) {
  if (items == items_) return;
  items_ = std::move(items);
  ++revision_;
  object_->emitSignal("LayoutUpdated").onInterface(kInterface).withArguments(revision_, kRoot);
}

/// Those of an item that were asked for; all of them when none were.
TrayMenu::Properties TrayMenu::propertiesOf(Id id, Names const& wanted) const {
  Properties all;
  if (!knows(id)) return all;
  if (id == kRoot) {
    all.emplace("children-display", std::string("submenu"));
  } else if (TrayMenuItem const& item = items_[static_cast<std::size_t>(id) - 1]; item.key.empty()) {
    all.emplace("type", std::string("separator"));
  } else {
    all.emplace("label", labelOf(item.label));
    all.emplace("enabled", item.isEnabled);
    all.emplace("visible", true);
  }
  if (!wanted.empty()) {
    std::erase_if(all, [&](auto const& entry) { return std::ranges::count(wanted, entry.first) == 0; });
  }
  return all;
}

TrayMenu::Entry TrayMenu::layout(Id parent, std::int32_t depth, Names const& wanted) const {
  if (!knows(parent)) throw unknownId();
  std::vector<sdbus::Variant> children;
  if (parent == kRoot && depth != 0) {
    children.reserve(items_.size());
    for (std::size_t i = 1; i <= items_.size(); ++i) {
      auto const id = static_cast<Id>(i);
      children.emplace_back(Entry(id, propertiesOf(id, wanted), std::vector<sdbus::Variant>()));
    }
  }
  return {parent, propertiesOf(parent, wanted), std::move(children)};
}

std::vector<TrayMenu::GroupProperties> TrayMenu::groupProperties(std::vector<Id> const& ids,
                                                                 Names const& wanted) const {
  std::vector<GroupProperties> groups;
  // Each item once: an answer is never larger than the menu.
  for (Id id = kRoot; knows(id); ++id) {
    bool const isMeant = ids.empty() || std::ranges::count(ids, id) > 0;
    if (isMeant) groups.emplace_back(id, propertiesOf(id, wanted));
  }
  return groups;
}

void TrayMenu::happened(Id id, std::string const& event) const {
  if (event != "clicked" || id == kRoot || !knows(id)) return;
  TrayMenuItem const& item = items_[static_cast<std::size_t>(id) - 1];
  if (item.isEnabled && !item.key.empty()) chosen_(item.key);
}

}  // namespace nimbara
