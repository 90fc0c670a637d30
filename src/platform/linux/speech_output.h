// Texts read out by the desktop's speech server. Its library is in a module beside the program that is loaded
// with the first text, so that nobody else pays for it.
#pragma once

#include "platform/session/speech.h"

#include <filesystem>
#include <string>

namespace nimbara {

struct SpeechModule;

/// Any thread may use it.
class SpeechOutput final : public Speech {
 public:
  /// `program` is the running program's file.
  explicit SpeechOutput(std::filesystem::path program) : program_(std::move(program)) {}

  Result<void, std::string> say(std::string const& text, std::string const& language,
                                SpeechUrgency urgency) override;
  void stop() override;
  bool isSpeaking() override;

 private:
  std::filesystem::path program_;
};

/// Why nothing could be read out at the moment, without a full stop; empty where it could. Starts no server.
std::string whySilent(std::filesystem::path const& program);

}  // namespace nimbara
