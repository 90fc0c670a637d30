// The layers of the map and which of them are on, as the user left them.
#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace nimbara {

struct MapSwitch {
  std::string_view name;
  std::string_view key;  ///< of its title
  bool beginsOn;
};

/// In the order of their switches.
inline constexpr std::array kMapSwitches = std::to_array<MapSwitch>({
    {"radar", "desktop.map.radar", true},
    {"streets", "desktop.map.streets", true},
    {"clouds", "desktop.credit.clouds", false},
    {"temperature", "customnotif.type.temperature", false},
    {"precipitation", "customnotif.type.precipitation", false},
    {"pressure", "customnotif.type.pressure", false},
    {"wind", "report.wind", false},
    {"places", "desktop.page.places", true},
    {"warnings", "desktop.official", true},
    {"quakes", "desktop.quakes", true},
    {"storms", "desktop.hazard.storms", true},
    {"fires", "desktop.hazard.fires", true},
    {"lightning", "desktop.hazard.lightning", true},
    {"stations", "desktop.station.around", false},
    {"towns", "desktop.map.towns", true},
});

class MapSwitches {
 public:
  bool isOn(std::string_view layer) const;
  /// Of the model's fields one at a time can be read: the one before is switched off.
  void toggle(std::string_view layer);
  /// The layers that are not as they begin, as the setting "mapLayers" has them: "radar,temperature".
  std::string text() const;
  /// Names of no layer are passed over.
  static MapSwitches of(std::string_view text);
  /// Those of a list that are on, and no others; of two fields the last.
  static MapSwitches only(std::string_view list);

 private:
  std::set<std::string, std::less<>> switched_;
};

/// The first name of a list separated by commas that is no layer's; empty where all are.
std::string_view unknownLayer(std::string_view list);

/// "radar, clouds, …"
std::string mapLayerNames();

}  // namespace nimbara
