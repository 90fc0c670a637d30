#include "notifications/rules/rain_memory.h"

#include "analysis/precip_predictor.h"

#include <algorithm>
#include <utility>

namespace nimbara {

namespace {

using State = PrecipOutlook::State;

/// The rain that the look found, if any.
struct Spell {
  bool isThere = false;
  bool isFalling = false;
  bool isNear = false;  ///< it falls, or begins soon enough
};

Spell spellOf(PrecipOutlook const& outlook, Instant now, std::chrono::minutes within) {
  bool const isFalling = outlook.state == State::falls;
  bool const isThere = isFalling || outlook.state == State::starts;
  return {isThere, isFalling, isFalling || (isThere && outlook.begin <= now + within)};
}

void tell(RainMemory& memory, PrecipOutlook const& outlook) {
  memory.isTold = true;
  memory.isArmed = false;
  memory.dryFrom = outlook.end;
}

/// Rain goes on, or follows what there was too soon.
void goOn(RainMemory& memory, PrecipOutlook const& outlook, bool isNear) {
  memory.isTold = memory.isTold && isNear;
  memory.isArmed = false;
  memory.dryFrom = outlook.end;
}

}  // namespace

RainMemory remembered(RainMemory memory, PrecipOutlook const& outlook, Instant now,
                      std::chrono::minutes within) {
  if (outlook.state == State::uncovered || outlook.state == State::notKnown) return memory;
  Spell const spell = spellOf(outlook, now, within);
  auto const before = memory.seenAt;
  bool const isWatched = before && *before <= now && now - *before <= kLongestBlink;
  memory.seenAt = now;
  if (!before && !spell.isFalling) memory.isArmed = true;
  if (spell.isFalling && !isWatched) memory.isArmed = false;
  if (memory.isArmed) {
    if (spell.isNear) tell(memory, outlook);
    return memory;
  }
  if (spell.isFalling) {
    goOn(memory, outlook, true);
    return memory;
  }
  // It is dry now. What was to fall and did not has ended; of a time that nobody saw nothing is known.
  Instant dryFrom = memory.dryFrom.value_or(now);
  if (!spell.isThere) dryFrom = std::min(dryFrom, now);
  if (!isWatched) dryFrom = std::max(dryFrom, now);
  memory.dryFrom = dryFrom;
  bool const isOther = spell.isThere && outlook.begin - dryFrom >= kDryToArm;
  if (spell.isThere && !isOther) {
    goOn(memory, outlook, spell.isNear);
    return memory;
  }
  bool const wasTold = std::exchange(memory.isTold, false);
  memory.isArmed = isOther || now - dryFrom >= kDryToArm;
  // One rain after the other: the first is over for whoever was told of it, the next look tells the other.
  if (isOther && spell.isNear && !wasTold) tell(memory, outlook);
  return memory;
}

}  // namespace nimbara
