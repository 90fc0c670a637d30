// What the module offers to the program that loads it. Both are built together; there is no other user.
#pragma once

#include <cstddef>

namespace nimbara {

enum class SpeechOutcome { said, noServer, refused };

struct SpeechModule {
  std::size_t size;  ///< of this record, by which the program tells that they were built together
  /// `language` is of two letters. Returns as soon as the server has taken the text.
  SpeechOutcome (*say)(char const* text, char const* language, bool isUrgent);
  /// Whether a server is running; none is started.
  bool (*isThere)();
  /// Ends what this process has begun to say.
  void (*stop)();
  bool (*isSpeaking)();
};

inline constexpr char kSpeechModuleSymbol[] = "nimbaraSpeechModule";
inline constexpr char kSpeechModuleFile[] = "nimbara-speech.so";

}  // namespace nimbara
