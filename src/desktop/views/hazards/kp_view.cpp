#include "desktop/views/hazards/kp_view.h"

#include "base/text/number.h"
#include "base/words/list_text.h"
#include "desktop/views/problem_text.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kBin{3};
constexpr hours kBack{7 * 24};
constexpr hours kAhead{3 * 24};
constexpr double kHighest = 9;
constexpr std::size_t kMostBars = 120;
/// Two bins and a while: younger values are all there is.
constexpr hours kTrust{6};

double hoursBetween(Instant from, Instant to) {
  return std::chrono::duration<double, std::ratio<3600>>(to - from).count();
}

std::string number(double kp, ViewContext const& context) {
  std::string text = fixedDecimal(kp, 1);
  text.replace(text.find('.'), 1, context.texts.decimalPoint());
  return text;
}

std::string levelKey(int level, std::string_view kind) {
  return "desktop.kp." + std::string(kind) + "." + std::to_string(level);
}

std::string noticeOf(FeedReading<KIndex> const& kp, ViewContext const& context) {
  if (!kp.failure) return {};
  std::string const because = becauseText(*kp.failure, context);
  if (!kp.checkedAt) return context.text("desktop.kp.neverChecked") + " " + because;
  TimeWords const words(context.texts, context.fallback);
  return context.texts.format("desktop.kp.uncheckedSince", words.moment(*kp.checkedAt, context.now)) + " " +
         because;
}

std::string sourceOf(std::optional<Instant> checkedAt, ViewContext const& context) {
  std::string source = context.standIn.empty() ? context.text("desktop.kp.source")
                                               : context.texts.format("report.standIn", context.standIn);
  if (!checkedAt) return source;
  return source + "  ·  " +
         context.texts.format("desktop.checked", ageText(*checkedAt, context.now, context.texts));
}

/// What was measured, and after it what is foreseen.
std::vector<KpReading> readingsOf(HazardsState const& state, Instant now) {
  std::vector<KpReading> readings = state.kp.data.recent;
  Instant const measured = readings.empty() ? Instant::min() : readings.back().begin;
  for (KpReading const& ahead : state.kpForecast.data) {
    if (ahead.begin > measured && ahead.begin + kBin > now) readings.push_back(ahead);
  }
  std::erase_if(readings, [now](KpReading const& reading) {
    return reading.begin < now - kBack || reading.begin > now + kAhead;
  });
  if (readings.size() > kMostBars) readings.erase(readings.begin(), readings.end() - kMostBars);
  return readings;
}

KpBar barOf(KpReading const& reading, Instant first, TimeWords const& words, ViewContext const& context) {
  KpBar bar;
  bar.x = hoursBetween(first, reading.begin);
  bar.kp = reading.kp;
  bar.level = kpLevel(reading.kp);
  bar.isForecast = reading.kind == KpKind::predicted;
  std::string const when =
      words.format(reading.begin, "EEEE jmm") + " – " + words.clock(reading.begin + kBin);
  bar.reading = context.texts.format(bar.isForecast ? "desktop.kp.foreseen" : "desktop.kp.reading", when,
                                     number(reading.kp, context), context.text(levelKey(bar.level, "word")));
  return bar;
}

std::vector<KpDay> daysBetween(Instant first, Instant end, Calendar const& calendar, TimeWords const& words) {
  std::vector<KpDay> days;
  for (Date day = calendar.day(first); calendar.startOfDay(day) < end; day = addDays(day, 1)) {
    Instant const begin = std::max(first, calendar.startOfDay(day));
    days.push_back({hoursBetween(first, begin), words.format(begin, "EEE d")});
  }
  return days;
}

}  // namespace

KpView kpView(HazardsState const& state, ViewContext const& context) {
  KpView view;
  view.notice = noticeOf(state.kp, context);
  view.source = sourceOf(state.kp.checkedAt, context);
  auto const kp = state.kp.data.now;
  bool const isOld = state.kp.checkedAt && std::chrono::abs(context.now - *state.kp.checkedAt) > kTrust;
  if (!kp || isOld) {
    view.word = view.notice.empty() ? context.text("desktop.kp.asking") : std::string();
    return view;
  }
  int const level = kpLevel(*kp);
  view.isKnown = true;
  view.value = number(*kp, context);
  view.word = context.text(levelKey(level, "word"));
  view.meaning = context.text(levelKey(level, "meaning"));
  view.share = std::clamp(*kp / kHighest, 0.0, 1.0);
  view.level = level;
  view.sentence = context.texts.format("kp.value", view.value);
  appendClause(view.sentence, view.word, context.texts);
  bool const hasForecast = !state.kpForecast.data.empty();
  if (!state.kp.data.recent.empty()) {
    view.hint = context.text(hasForecast ? "desktop.kp.hintForecast" : "desktop.kp.hint");
  }
  return view;
}

KpBars kpBars(HazardsState const& state, ViewContext const& context) {
  KpBars all;
  auto const readings = readingsOf(state, context.now);
  if (readings.empty()) return all;
  TimeWords const words(context.texts, context.fallback);
  Instant const first = readings.front().begin;
  Instant const end = readings.back().begin + kBin;
  all.hours = hoursBetween(first, end);
  all.now = hoursBetween(first, context.now);
  all.bars.reserve(readings.size());
  for (KpReading const& reading : readings) all.bars.push_back(barOf(reading, first, words, context));
  all.days = daysBetween(first, end, context.fallback, words);
  return all;
}

}  // namespace nimbara
