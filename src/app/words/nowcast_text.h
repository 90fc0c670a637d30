// The nowcast of a place in the words of a language: what falls when, who says so, or why nobody could be
// asked. Pure.
#pragma once

#include "base/words/time_words.h"
#include "feeds/nowcast/nowcast_service.h"
#include "model/weather_data.h"

#include <span>
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

/// The reading with rain, sleet or snow named by the temperatures of these hours where its source does not
/// say it.
NowcastReading withFall(NowcastReading reading, std::span<HourlyForecast const> hours);

/// What a current nowcast says of a moment and the time after it, for faces that show more than its sentence.
struct NowcastNow {
  bool isKnown = false;
  bool isWet = false;       ///< it falls now
  bool isWetAhead = false;  ///< or within two hours
  Fall fall = Fall::unknown;
  Instant dryUntil{};  ///< at least; where it is known and nothing falls ahead
};
NowcastNow nowcastNow(NowcastReading const& reading, Instant now);

/// "MET Norway, radar, 5 min ago"; empty unless the nowcast is current.
std::string nowcastSource(NowcastReading const& reading, Instant now, Texts const& texts);

}  // namespace nimbara
