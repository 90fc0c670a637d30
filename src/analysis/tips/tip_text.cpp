#include "analysis/tips/tip_generator.h"
#include "base/words/clock_phrase.h"
#include "base/words/time_words.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// How many reasons of each side a line has room for.
constexpr std::size_t kMostFor = 3;
constexpr std::size_t kMostAgainst = 2;
constexpr double kGoldenLight = 10;

/// What goes without saying when it is as one would wish.
bool isWorthSaying(TipReason const& reason) {
  if (!reason.isFor) return true;
  switch (reason.quantity) {
    case TipQuantity::thunder:
    case TipQuantity::gusts:
    case TipQuantity::ice:
    case TipQuantity::uv:
    case TipQuantity::air:
    case TipQuantity::pollen:
      return false;
    default:
      return true;
  }
}

std::string rangeOf(TipWindow const& window, Instant now, TimeWords const& time, Texts const& texts,
                    Calendar const& calendar) {
  ClockPhrase const clock(texts, calendar);
  std::string const span =
      texts.format("advice.span", clock.name(std::max(window.from, now)), clock.name(window.to));
  if (calendar.isSameDay(window.from, now)) return texts.format("advice.today", span);
  if (calendar.day(window.from) == addDays(calendar.day(now), 1))
    return texts.format("advice.tomorrow", span);
  return texts.format("advice.day", time.weekday(window.from), span);
}

}  // namespace

std::string reasonText(TipReason const& reason, Activity activity, Units const& units, Texts const& texts) {
  std::string key = "advice." + std::string(reason.isFor ? "for." : "against.");
  if (reason.quantity == TipQuantity::temperature) {
    std::string const shown =
        display(reason.value, units.temperature) + " " + std::string(symbol(units.temperature));
    if (reason.isFor) return texts.format("advice.for.temperature", shown);
    return texts.format(reason.isBelow ? "advice.against.cold" : "advice.against.heat", shown);
  }
  if (reason.quantity == TipQuantity::wind || reason.quantity == TipQuantity::gusts) {
    if (reason.isFor) return std::string(texts.text("advice.for.wind"));
    return texts.format("advice.against.wind",
                        display(reason.value, units.wind) + " " + std::string(symbol(units.wind)));
  }
  if (reason.quantity == TipQuantity::sun) {
    bool const isGolden = activity == Activity::photography && reason.value < kGoldenLight;
    if (reason.isFor)
      return std::string(texts.text(activity == Activity::stargazing ? "advice.for.dark"
                                    : isGolden                       ? "advice.for.golden"
                                                                     : "advice.for.sun"));
    bool const isGlaring = !reason.isBelow && activity != Activity::stargazing;
    return std::string(texts.text(reason.isBelow ? "advice.against.dark"
                                  : isGlaring    ? "advice.against.uv"
                                                 : "advice.against.bright"));
  }
  if (reason.quantity == TipQuantity::clouds && activity == Activity::photography && reason.isFor)
    key = "advice.for.some_";
  return std::string(texts.text(key + std::string(enumName(reason.quantity))));
}

std::vector<std::string> tipLines(Tip const& tip, Instant now, Units const& units, Texts const& texts,
                                  Calendar const& calendar) {
  TimeWords const time(texts, calendar);
  if (tip.state == Tip::State::notKnown) return {std::string(texts.text("advice.notKnown"))};
  if (tip.state == Tip::State::none) {
    if (!tip.against) return {std::string(texts.text("advice.none"))};
    return {texts.format("advice.noneBecause", reasonText(*tip.against, tip.activity, units, texts))};
  }
  std::vector<std::string> lines;
  for (TipWindow const& window : tip.windows) {
    std::string reasons;
    std::size_t counts[2] = {};
    for (TipReason const& reason : window.reasons) {
      if (!isWorthSaying(reason)) continue;
      if (++counts[reason.isFor ? 0 : 1] > (reason.isFor ? kMostFor : kMostAgainst)) continue;
      std::string const text = reasonText(reason, tip.activity, units, texts);
      reasons = reasons.empty() ? text : texts.format("brief.clauses", reasons, text);
    }
    std::string const range = rangeOf(window, now, time, texts, calendar);
    lines.push_back(reasons.empty() ? range : texts.format("brief.named", range, reasons));
  }
  return lines;
}

}  // namespace nimbara
