// The port through which a text is read out. There may be nobody to read it: whoever asks has shown the text.
#pragma once

#include "base/result.h"

#include <string>

namespace nimbara {

enum class SpeechUrgency {
  usual,
  urgent  ///< interrupts other texts
};

class Speech {
 public:
  virtual ~Speech() = default;
  /// `language` is of two letters. Returns once the text is taken, which may take seconds. The error is a
  /// sentence without a full stop.
  virtual Result<void, std::string> say(std::string const& text, std::string const& language,
                                        SpeechUrgency urgency) = 0;
  /// Ends what this program has begun to say.
  virtual void stop() = 0;
  /// Something that this program began is being read out.
  virtual bool isSpeaking() = 0;
};

}  // namespace nimbara
