// A settings store that forgets with its process: for runs that must leave the user's own alone, and for
// tests.
#pragma once

#include "platform/settings/settings_store.h"

#include <array>
#include <condition_variable>
#include <mutex>

namespace nimbara {

class ScratchSettingsStore : public SettingsStore {
 public:
  using SettingsStore::SettingsStore;

  /// Everything that an area holds from now on.
  void fill(StoreArea area, SettingValues values) {
    std::lock_guard const lock(mutex_);
    valuesOf(area) = std::move(values);
    noteChange();
  }

  Result<SettingValues, StoreError> read(StoreArea area) override {
    std::lock_guard const lock(mutex_);
    return valuesOf(area);
  }

  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override {
    std::lock_guard const lock(mutex_);
    SettingValues& values = valuesOf(area);
    auto const changes = decide(values);
    if (!changes) return std::unexpected(changes.error());
    for (auto const& [key, value] : *changes) {
      if (value) {
        values[key] = *value;
      } else {
        values.erase(key);
      }
    }
    noteChange();
    return {};
  }

  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override {
    return std::make_unique<Watch>(*this);
  }

 private:
  class Watch final : public SettingsWatch {
   public:
    explicit Watch(ScratchSettingsStore& store) : store_(store), seen_(store.changes_) {}
    WaitOutcome wait(std::stop_token stop,
                     std::optional<std::chrono::steady_clock::time_point> deadline) override {
      std::unique_lock lock(store_.mutex_);
      auto const hasChanged = [this] { return store_.changes_ != seen_; };
      bool const changed = deadline ? store_.changed_.wait_until(lock, stop, *deadline, hasChanged)
                                    : store_.changed_.wait(lock, stop, hasChanged);
      seen_ = store_.changes_;
      return changed                 ? WaitOutcome::changed
             : stop.stop_requested() ? WaitOutcome::stopped
                                     : WaitOutcome::timedOut;
    }

   private:
    ScratchSettingsStore& store_;
    int seen_;
  };

  SettingValues& valuesOf(StoreArea area) { return areas_[static_cast<std::size_t>(area)]; }
  void noteChange() {
    ++changes_;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable_any changed_;
  int changes_ = 0;
  std::array<SettingValues, enumNames<StoreArea>.size()> areas_;
};

}  // namespace nimbara
