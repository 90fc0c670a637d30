#include "platform/linux/speech_output.h"

#include "platform/linux/module_loader.h"
#include "platform/linux/speech/speech_module.h"

namespace nimbara {

namespace {

constexpr char kNoModule[] = "the component for speech (nimbara-speech.so) is not installed";
constexpr char kNoServer[] = "Speech Dispatcher is not running";

/// Null where there is none, or one of another build.
SpeechModule const* speechModule(std::filesystem::path const& program) {
  auto const* const module =
      static_cast<SpeechModule const*>(loadModule(program, kSpeechModuleFile, kSpeechModuleSymbol));
  return module != nullptr && module->size == sizeof(SpeechModule) ? module : nullptr;
}

}  // namespace

Result<void, std::string> SpeechOutput::say(std::string const& text, std::string const& language,
                                            SpeechUrgency urgency) {
  SpeechModule const* const module = speechModule(program_);
  if (module == nullptr) return std::unexpected(kNoModule);
  bool const isUrgent = urgency == SpeechUrgency::urgent;
  switch (module->say(text.c_str(), language.c_str(), isUrgent)) {
    case SpeechOutcome::said:
      return {};
    case SpeechOutcome::noServer:
      return std::unexpected(kNoServer);
    case SpeechOutcome::refused:
      break;
  }
  return std::unexpected("Speech Dispatcher refused the text");
}

void SpeechOutput::stop() {
  if (SpeechModule const* const module = speechModule(program_)) module->stop();
}

bool SpeechOutput::isSpeaking() {
  SpeechModule const* const module = speechModule(program_);
  return module != nullptr && module->isSpeaking();
}

std::string whySilent(std::filesystem::path const& program) {
  SpeechModule const* const module = speechModule(program);
  if (module == nullptr) return kNoModule;
  return module->isThere() ? "" : kNoServer;
}

}  // namespace nimbara
