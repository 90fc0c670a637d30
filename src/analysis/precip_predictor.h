// From the steps of a nowcast to what a person wants to know: for how long it stays dry, when it begins and
// when it ends. Pure.
#pragma once

#include "base/words/time_words.h"
#include "model/nowcast.h"

#include <chrono>
#include <string>

namespace nimbara {

struct PrecipOutlook {
  enum class State {
    uncovered,  ///< nobody offers a nowcast of the place
    notKnown,   ///< the steps say nothing about now
    dry,        ///< for `dryFor` at least
    starts,     ///< dry now; falls from `begin` to `end`
    falls       ///< now, until `end`
  };

  State state = State::notKnown;
  Fall fall = Fall::unknown;
  Instant begin{};  ///< rounded to the source's step, as `end` is
  Instant end{};
  bool isEndOpen = false;          ///< it falls until `end` at least
  std::chrono::minutes dryFor{0};  ///< whole steps, at most two hours

  bool operator==(PrecipOutlook const&) const = default;
};

class PrecipPredictor {
 public:
  /// Pauses and holes in the data that are shorter are passed over.
  static constexpr std::chrono::minutes kShortestGap{10};

  /// The steps may come in any order; of two that overlap the earlier one counts.
  explicit PrecipPredictor(Nowcast nowcast);

  PrecipOutlook outlook(Instant now) const;

 private:
  std::vector<NowcastStep> stepsFrom(Instant now) const;
  PrecipOutlook dryOutlook(Instant now, Instant dryUntil) const;
  PrecipOutlook wetOutlook(std::vector<NowcastStep> const& steps, std::size_t first, bool isRunning) const;
  Instant rounded(Instant instant) const;

  Nowcast nowcast_;
  std::chrono::milliseconds step_;
};

/// "Rain starting around 14:35, for about 40 minutes", without a full stop, in the time of `words`.
std::string sentenceOf(PrecipOutlook const& outlook, Texts const& texts, TimeWords const& words);

}  // namespace nimbara
