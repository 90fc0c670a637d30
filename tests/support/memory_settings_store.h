// A settings store that forgets with its process, for tests of those who use one.
#pragma once

#include "platform/settings_store.h"

#include <array>
#include <condition_variable>
#include <mutex>

namespace nimbara::test {

class MemorySettingsStore final : public SettingsStore {
 public:
  using SettingsStore::SettingsStore;

  Result<SettingValues, StoreError> read(StoreArea area) override {
    std::lock_guard const lock(mutex_);
    if (failure) return std::unexpected(*failure);
    return areas_[static_cast<std::size_t>(area)];
  }

  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override {
    std::lock_guard const lock(mutex_);
    if (failure) return std::unexpected(*failure);
    SettingValues& values = areas_[static_cast<std::size_t>(area)];
    auto const changes = decide(values);
    if (!changes) return std::unexpected(changes.error());
    for (auto const& [key, value] : *changes) {
      if (value) {
        values[key] = *value;
      } else {
        values.erase(key);
      }
    }
    ++changes_;
    changed_.notify_all();
    return {};
  }

  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override {
    return std::make_unique<Watch>(*this);
  }

  std::optional<StoreError> failure;  ///< what every call shall answer

 private:
  class Watch final : public SettingsWatch {
   public:
    explicit Watch(MemorySettingsStore& store) : store_(store), seen_(store.changes_) {}
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
    MemorySettingsStore& store_;
    int seen_;
  };

  std::mutex mutex_;
  std::condition_variable_any changed_;
  int changes_ = 0;
  std::array<SettingValues, enumNames<StoreArea>.size()> areas_;
};

}  // namespace nimbara::test
