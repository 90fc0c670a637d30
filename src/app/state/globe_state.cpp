#include "app/state/globe_state.h"

#include "base/text/text.h"

namespace nimbara {

std::string_view legendName(SatelliteCatalog::Group const& group) {
  return group.display.substr(group.display.rfind('.') + 1);
}

std::set<std::string, std::less<>> hiddenRows(std::string_view setting) {
  std::set<std::string, std::less<>> rows;
  for (std::string_view const name : split(setting, ',')) {
    if (!trimmed(name).empty()) rows.emplace(trimmed(name));
  }
  return rows;
}

std::string hiddenSetting(std::set<std::string, std::less<>> const& rows) {
  std::string setting;
  for (std::string const& row : rows) setting += (setting.empty() ? "" : ",") + row;
  return setting;
}

}  // namespace nimbara
