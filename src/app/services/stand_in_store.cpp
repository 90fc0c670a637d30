#include "app/services/stand_in_store.h"

namespace nimbara {

namespace {

constexpr std::string_view kPrefix = "standIn.";

/// The entries below the prefix, without it.
SettingValues below(SettingValues const& all) {
  SettingValues found;
  for (auto entry = all.lower_bound(kPrefix); entry != all.end() && entry->first.starts_with(kPrefix);
       ++entry) {
    found.emplace(entry->first.substr(kPrefix.size()), entry->second);
  }
  return found;
}

}  // namespace

Result<SettingValues, StoreError> StandInStore::read(StoreArea area) {
  auto values = store_.read(area);
  if (!values || area != StoreArea::state) return values;
  return below(*values);
}

Result<void, StoreError> StandInStore::update(StoreArea area, StoreDecision const& decide) {
  if (area != StoreArea::state) return store_.update(area, decide);
  return store_.update(area, [&](SettingValues const& stored) -> Result<StoreChanges, StoreError> {
    auto const changes = decide(below(stored));
    if (!changes) return changes;
    StoreChanges prefixed;
    for (auto const& [key, value] : *changes) prefixed.emplace(std::string(kPrefix) + key, value);
    return prefixed;
  });
}

}  // namespace nimbara
