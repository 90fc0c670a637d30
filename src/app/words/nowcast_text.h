// The nowcast of a place in the words of a language: what falls when, who says so, or why nobody could be
// asked. Pure.
#pragma once

#include "base/words/time_words.h"
#include "feeds/nowcast/nowcast_service.h"

#include <string>

namespace nimbara {

struct NowcastText {
  std::string sentence;  ///< without a full stop
  std::string source;    ///< "MET Norway, radar, 5 min ago"; empty unless the nowcast is current

  /// Both in one line: "Dry for at least two hours (MET Norway, radar, 5 min ago)".
  std::string line() const { return source.empty() ? sentence : sentence + " (" + source + ")"; }
  bool operator==(NowcastText const&) const = default;
};

/// In the time of `words`. Where nobody offers a nowcast the sentence says so.
NowcastText nowcastText(NowcastReading const& reading, Instant now, Texts const& texts,
                        TimeWords const& words);

/// "MET Norway, radar, 5 min ago"; empty unless the nowcast is current.
std::string nowcastSource(NowcastReading const& reading, Instant now, Texts const& texts);

}  // namespace nimbara
