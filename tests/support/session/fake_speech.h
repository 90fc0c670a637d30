// Speech that keeps what it was asked to say.
#pragma once

#include "platform/session/speech.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace nimbara::test {

class FakeSpeech final : public Speech {
 public:
  Result<void, std::string> say(std::string const& text, std::string const& language,
                                SpeechUrgency urgency) override {
    std::lock_guard const lock(mutex_);
    if (!isThere) return std::unexpected("nobody there");
    said_.push_back(language + (urgency == SpeechUrgency::urgent ? "! " : ": ") + text);
    isSpeaking_ = true;
    return {};
  }
  void stop() override { isSpeaking_ = false; }
  bool isSpeaking() override { return isSpeaking_; }

  /// As "en: text", with "!" for what is urgent.
  std::vector<std::string> said() const {
    std::lock_guard const lock(mutex_);
    return said_;
  }

  std::atomic<bool> isThere = true;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> said_;
  std::atomic<bool> isSpeaking_ = false;
};

}  // namespace nimbara::test
