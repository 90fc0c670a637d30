// The port through which a sentence is asked of a language model on the user's own machine. A model may be
// slow, wrong or absent: whoever asks checks the reply and has a text of its own.
#pragma once

#include "base/result.h"

#include <stop_token>
#include <string>

namespace nimbara {

class LanguageModel {
 public:
  virtual ~LanguageModel() = default;
  /// False while the user has named none.
  virtual bool isThere() { return true; }
  /// Blocks for at most ten seconds. The error is a sentence without a full stop.
  virtual Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const& stop) = 0;
};

}  // namespace nimbara
