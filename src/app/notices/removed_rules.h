// The user's own rules that watched a removed place: they are kept, disabled, and enabled again when the
// removal is taken back. Remembers until the end of the program which those were. Owned by the core; of the
// thread of its commands alone.
#pragma once

#include "base/uuid.h"
#include "platform/settings/settings_store.h"

#include <map>
#include <vector>

namespace nimbara {

class RemovedRules {
 public:
  explicit RemovedRules(SettingsStore& store) : store_(store) {}

  /// `remaining` are the places that are still saved.
  void disable(Uuid const& place, std::vector<Uuid> const& remaining);
  void enable(Uuid const& place);

 private:
  SettingsStore& store_;
  std::map<Uuid, std::vector<Uuid>> disabled_;  // by place
};

}  // namespace nimbara
