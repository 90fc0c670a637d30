#include "desktop/views/map/map_switches.h"

#include "base/text/text.h"
#include "feeds/imagery/model_fields.h"

#include <algorithm>

namespace nimbara {

namespace {

MapSwitch const* layerOf(std::string_view name) {
  auto const* const found = std::ranges::find(kMapSwitches, name, &MapSwitch::name);
  return found == kMapSwitches.end() ? nullptr : found;
}

bool isField(std::string_view layer) {
  return enumFromName<FieldKind>(layer).has_value();
}

}  // namespace

bool MapSwitches::isOn(std::string_view layer) const {
  MapSwitch const* const known = layerOf(layer);
  return known != nullptr && known->beginsOn != switched_.contains(layer);
}

void MapSwitches::toggle(std::string_view layer) {
  if (layerOf(layer) == nullptr) return;
  if (isField(layer) && !isOn(layer)) {
    for (std::string_view const other : enumNames<FieldKind>) {
      if (isOn(other)) toggle(other);
    }
  }
  if (auto const before = switched_.find(layer); before != switched_.end()) {
    switched_.erase(before);
  } else {
    switched_.emplace(layer);
  }
}

std::string MapSwitches::text() const {
  std::string text;
  for (MapSwitch const& layer : kMapSwitches) {
    if (!switched_.contains(layer.name)) continue;
    if (!text.empty()) text += ',';
    text += layer.name;
  }
  return text;
}

MapSwitches MapSwitches::of(std::string_view text) {
  MapSwitches made;
  for (std::string_view const name : split(text, ',')) {
    MapSwitch const* const layer = layerOf(name);
    if (layer != nullptr && made.isOn(name) == layer->beginsOn) made.toggle(name);
  }
  return made;
}

MapSwitches MapSwitches::only(std::string_view list) {
  MapSwitches made;
  for (MapSwitch const& layer : kMapSwitches) {
    if (layer.beginsOn) made.toggle(layer.name);
  }
  for (std::string_view const name : split(list, ',')) {
    if (!made.isOn(name)) made.toggle(name);
  }
  return made;
}

std::string_view unknownLayer(std::string_view list) {
  for (std::string_view const name : split(list, ',')) {
    if (layerOf(name) == nullptr) return name.empty() ? "," : name;
  }
  return {};
}

std::string mapLayerNames() {
  std::string names;
  for (MapSwitch const& layer : kMapSwitches) {
    if (!names.empty()) names += ", ";
    names += layer.name;
  }
  return names;
}

}  // namespace nimbara
