#include "analysis/brief/weather_brief.h"

#include "analysis/brief/brief_events.h"
#include "analysis/brief/brief_words.h"
#include "analysis/hour_kind.h"
#include "analysis/trend_analyzer.h"
#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace nimbara {

namespace {

using Hours = std::span<HourlyForecast const>;
using std::chrono::hours;

constexpr int kMorning = 6;
constexpr int kEvening = 18;
constexpr int kNightIsOver = 5;
constexpr hours kWorthADay{1};
constexpr std::size_t kMostSentences = 5;
constexpr double kFeltApartC = 4;
constexpr double kGustsKmph = 50;
constexpr double kStormyKmph = 75;
constexpr int kHighUv = 6;
constexpr int kVeryHighUv = 8;
constexpr double kDaysApartC = 5;
constexpr double kSameDayC = 2;
constexpr double kDeepFrostC = -8;
constexpr double kSkyChange = 1;
constexpr double kFeltHotC = 33;
constexpr double kFeltColdC = -5;

struct Span : BriefSpan {
  Span(BriefPart which, Instant from, Instant to) : BriefSpan{from, to}, part(which) {}

  BriefPart part;
};

/// One of the sentences that may be said; rank 0 is always said.
struct Candidate {
  BriefPart part;
  int rank;
  std::string text;
};

enum Rank { always, nowcast, stormy, veryHighUv, laterDays, front, gusts, pressure, frost, highUv, climate };

int cloudiness(WeatherConditionCode condition) {
  return std::min(static_cast<int>(condition), static_cast<int>(WeatherConditionCode::overcast));
}

bool isSky(HourlyForecast const& hour) {
  return hour.condition <= WeatherConditionCode::overcast;
}

class Writer {
 public:
  Writer(WeatherData const& weather, BriefBeside const& beside, Instant now, Units const& units,
         Texts const& texts, Calendar const& calendar)
      : weather_(weather),
        beside_(beside),
        now_(now),
        calendar_(calendar),
        words_(units, texts, calendar),
        present_(presentAt(weather, now)),
        events_(EventDetector{}.detect(weather, now, calendar)),
        trends_(TrendAnalyzer{}.analyze(weather, now, calendar)) {
    cutSpans();
  }

  Brief brief() && {
    addWarning();
    addPresent();
    for (Span const& span : spans_) addSpan(span);
    addGusts();
    addUv();
    addTrends();
    return chosen();
  }

 private:
  Instant at(Date day, int hour) const {
    return calendar_.instant(LocalTime(std::chrono::local_days(day).time_since_epoch()) + hours(hour));
  }

  void cutSpans() {
    Date const today = calendar_.day(now_);
    Date const tomorrow = addDays(today, 1);
    Instant const midnight = calendar_.startOfDay(addDays(today, 2));
    if (calendar_.hour(now_) < kNightIsOver) {
      spans_ = {{BriefPart::tonight, now_, at(today, kMorning)},
                {BriefPart::today, at(today, kMorning), calendar_.startOfDay(tomorrow)}};
    } else {
      Instant const evening = at(today, kEvening);
      if (evening - now_ >= kWorthADay) spans_.push_back({BriefPart::today, now_, evening});
      spans_.push_back({BriefPart::tonight, std::max(now_, evening), at(tomorrow, kMorning)});
    }
    spans_.push_back({BriefPart::tomorrow, at(tomorrow, kMorning), midnight});
  }

  Hours hoursOf(Span const& span) const { return hoursWithin(weather_, span); }

  void add(BriefPart part, int rank, std::vector<std::string> const& clauses) {
    if (std::string text = words_.sentence(clauses); !text.empty())
      candidates_.push_back({part, rank, std::move(text)});
  }

  /// False for a figure that was said before.
  bool isNew(std::string const& figure) { return said_.insert(figure).second; }

  // ---- what is official

  BriefPart partAt(Instant instant) const {
    for (Span const& span : spans_) {
      if (instant < span.end) return span.part;
    }
    return BriefPart::tomorrow;
  }

  void addWarning() {
    auto const isHere = [&](WeatherAlert const& warning) {
      bool const isAway = warning.distanceKm || warning.onWater.value_or(false);
      bool const isOver = warning.expires && *warning.expires <= now_;
      bool const isFar = warning.onset && *warning.onset >= spans_.back().end;
      return warning.severity >= AlertSeverity::advisory && !isAway && !isOver && !isFar;
    };
    auto const found = std::ranges::find_if(beside_.warnings, isHere);
    if (found != beside_.warnings.end()) return addOfficial(*found);
    addGenerated();
  }

  /// Not in need of a word that names its day: what is told of tomorrow has one.
  bool isNear(Instant instant, bool isTomorrows) const {
    return instant < spans_.back().begin || (isTomorrows && instant <= spans_.back().end);
  }

  /// Moments of an authority keep their minutes.
  std::string official(ClockRole role, Instant instant, bool isTomorrows) const {
    using enum ClockPhrase::Precision;
    return isNear(instant, isTomorrows) ? words_.clock().phrase(role, instant, minute)
                                        : words_.clock().phraseOnDay(role, instant, now_, minute);
  }

  void addOfficial(WeatherAlert const& warning) {
    Texts const& texts = words_.texts();
    bool const isAhead = warning.onset && *warning.onset > now_;
    bool const isTomorrows = isAhead && partAt(*warning.onset) == BriefPart::tomorrow;
    std::string text = words_.officialName(warning.title);
    if (isAhead && warning.expires && isNear(*warning.expires, isTomorrows)) {
      text =
          texts.format("brief.during", text,
                       words_.clock().span(*warning.onset, *warning.expires, ClockPhrase::Precision::minute));
    } else {
      if (isAhead)
        text = texts.format("brief.during", text, official(ClockRole::from, *warning.onset, isTomorrows));
      if (warning.expires)
        text = texts.format("brief.until", text, official(ClockRole::until, *warning.expires, isTomorrows));
    }
    bool const startsWithNow = !isAhead && present_;
    add(startsWithNow ? BriefPart::now : partAt(isAhead ? *warning.onset : now_), always, {text});
  }

  /// What no other sentence says.
  void addGenerated() {
    auto const found = std::ranges::find_if(beside_.alerts, [](WeatherAlert const& alert) {
      return alert.kind == WarningKind::tornado && alert.severity >= AlertSeverity::warning;
    });
    if (found != beside_.alerts.end()) add(spans_.front().part, always, {found->title});
  }

  // ---- the present

  /// The highs and lows that the parts behind it will give.
  std::set<std::string, std::less<>> figuresAhead() const {
    std::set<std::string, std::less<>> figures;
    for (Span const& span : spans_) {
      Hours const within = hoursOf(span);
      if (within.empty()) continue;
      auto const [lowest, highest] = std::ranges::minmax_element(within, {}, &HourlyForecast::tempC);
      auto const& one = span.part == BriefPart::tonight ? *lowest : *highest;
      figures.insert(words_.temperature(one.tempC, one.tempF));
    }
    return figures;
  }

  void addPresent() {
    if (!present_) return;
    std::string const temperature = words_.temperature(present_->tempC, present_->tempF);
    isNew(temperature);
    std::set<std::string, std::less<>> const ahead = figuresAhead();
    std::vector<std::string> clauses{words_.sky(present_->condition, present_->isDay), temperature};
    std::string const felt = words_.temperature(present_->feelsLikeC, present_->feelsLikeF);
    if (std::abs(present_->feelsLikeC - present_->tempC) >= kFeltApartC && !ahead.contains(felt) &&
        isNew(felt)) {
      felt_ = present_->feelsLikeC;
      clauses.push_back(words_.texts().format("report.feelsLike", felt));
    }
    add(BriefPart::now, always, clauses);
    using enum PrecipOutlook::State;
    if (beside_.nowcast && (beside_.nowcast->state == starts || beside_.nowcast->state == falls))
      add(BriefPart::now, nowcast, {sentenceOf(*beside_.nowcast, words_.texts(), words_.time())});
    if (!beside_.climate.empty()) add(BriefPart::now, climate, {beside_.climate});
  }

  /// The moment until which the nowcast knows it to be dry.
  Instant dryUntil() const {
    bool const isDry = beside_.nowcast && beside_.nowcast->state == PrecipOutlook::State::dry;
    return isDry ? now_ + beside_.nowcast->dryFor : Instant::min();
  }

  // ---- today, tonight, tomorrow

  void addSpan(Span const& span) {
    Hours const within = hoursOf(span);
    BriefEvents const events(weather_, events_, words_,
                             {now_, spans_.front().begin, dryUntil(), isFalling()});
    std::vector<std::string> clauses;
    auto const told = events.told(span);
    isWet_ = isWet_ || std::ranges::any_of(
                           told, [](MergedEvent const& one) { return one.event.kind != EventKind::fog; });
    for (MergedEvent const& one : told) {
      clauses.push_back(events.clauseOf(one, span));
      std::string amount = events.amountOf(one, span);
      if (!amount.empty() && isNew(amount)) clauses.push_back(std::move(amount));
    }
    addSky(clauses, within, told.empty());
    addTemperature(clauses, span, within);
    add(span.part, always, clauses);
  }

  /// Something falls at present; nothing where the present is not known.
  std::optional<bool> isFalling() const {
    return present_.transform([](Present const& present) { return isPrecipitation(present.condition); });
  }

  void addSky(std::vector<std::string>& clauses, Hours within, bool isAlone) const {
    std::vector<HourlyForecast const*> skies;
    for (HourlyForecast const& hour : within) {
      if (isSky(hour) && !falls(fallOf(hour)) && !isThickFog(hour)) skies.push_back(&hour);
    }
    if (skies.empty() || (!isAlone && 5 * skies.size() < 2 * within.size())) return;
    std::array<int, 4> tally{};
    for (auto const* const hour : skies) ++tally[static_cast<std::size_t>(hour->condition)];
    auto const most = std::ranges::max_element(tally);
    auto const condition = static_cast<WeatherConditionCode>(most - tally.begin());
    bool const isDay = isDayIn(weather_, *skies[skies.size() / 2]);
    std::string const sky = words_.sky(condition, isDay);
    if (!isAlone) return clauses.push_back(words_.texts().format("brief.otherwise", sky));
    double const change = skyChange(skies);
    if (std::abs(change) < kSkyChange) return clauses.push_back(sky);
    auto const* const first = skies[skies.size() / 4];
    clauses.push_back(words_.sky(first->condition, isDayIn(weather_, *first)));
    clauses.emplace_back(words_.texts().text(change > 0 ? "brief.clouding" : "brief.clearing"));
  }

  /// By how many steps the second half is cloudier than the first.
  static double skyChange(std::vector<HourlyForecast const*> const& skies) {
    if (skies.size() < 4) return 0;
    auto const middle = skies.size() / 2;
    double first = 0;
    double second = 0;
    for (std::size_t i = 0; i < skies.size(); ++i)
      (i < middle ? first : second) += cloudiness(skies[i]->condition);
    return second / static_cast<double>(skies.size() - middle) - first / static_cast<double>(middle);
  }

  void addTemperature(std::vector<std::string>& clauses, Span const& span, Hours within) {
    if (within.empty()) return;
    auto const [lowest, highest] = std::ranges::minmax_element(within, {}, &HourlyForecast::tempC);
    if (span.part == BriefPart::tonight) return addLow(clauses, *lowest);
    bool const isPast = span.begin == now_ && present_ && highest->tempC <= present_->tempC;
    std::string const high = words_.temperature(highest->tempC, highest->tempF);
    bool const isTold = !isPast && isNew(high);
    if (isTold) {
      clauses.push_back(words_.texts().format("brief.high", high));
      addFelt(clauses, *highest);
    }
    if (span.part == BriefPart::tomorrow) addComparison(clauses, isTold);
  }

  /// Heat and cold that feel worse than the figure just given, unless the present feels much like it.
  void addFelt(std::vector<std::string>& clauses, HourlyForecast const& hour) {
    bool const isBad = hour.feelsLikeC >= kFeltHotC || hour.feelsLikeC <= kFeltColdC;
    bool const isNews = !felt_ || std::abs(*felt_ - hour.feelsLikeC) >= kDaysApartC;
    if (!isBad || !isNews || !apart(hour)) return;
    std::string const shown = words_.temperature(hour.feelsLikeC, hour.feelsLikeF);
    if (!isNew(shown)) return;
    felt_ = hour.feelsLikeC;
    clauses.push_back(words_.texts().format("report.feelsLike", shown));
  }

  static bool apart(HourlyForecast const& hour) {
    return std::abs(hour.feelsLikeC - hour.tempC) >= kFeltApartC;
  }

  void addLow(std::vector<std::string>& clauses, HourlyForecast const& lowest) {
    std::string const low = words_.temperature(lowest.tempC, lowest.tempF);
    if ((present_ && lowest.tempC >= present_->tempC) || !isNew(low)) return;
    bool const isFrost = lowest.tempC <= 0 && lowest.tempC > kDeepFrostC;
    clauses.push_back(words_.texts().format(isFrost ? "brief.lowFrost" : "brief.low", low));
    addFelt(clauses, lowest);
  }

  DailyForecast const* dayOf(Date date) const {
    auto const found = std::ranges::find_if(
        weather_.daily, [&](DailyForecast const& day) { return calendar_.day(day.date) == date; });
    return found == weather_.daily.end() ? nullptr : &*found;
  }

  void addComparison(std::vector<std::string>& clauses, bool isHighTold) {
    auto const* const today = dayOf(calendar_.day(now_));
    auto const* const tomorrow = dayOf(addDays(calendar_.day(now_), 1));
    if (today == nullptr || tomorrow == nullptr) return;
    double const change = tomorrow->maxTempC - today->maxTempC;
    if (std::abs(change) < kSameDayC && !isHighTold) clauses.emplace_back(words_.texts().text("brief.same"));
    if (std::abs(change) < kDaysApartC) return;
    isCompared_ = true;
    clauses.push_back(
        words_.texts().format(change > 0 ? "brief.warmer" : "brief.colder", words_.degrees(change)));
  }

  // ---- what else is worth a sentence

  void addGusts() {
    HourlyForecast const* strongest = nullptr;
    BriefPart part = BriefPart::now;
    for (Span const& span : spans_) {
      for (HourlyForecast const& hour : hoursOf(span)) {
        if (strongest != nullptr && strongestWind(hour) <= strongestWind(*strongest)) continue;
        strongest = &hour;
        part = span.part;
      }
    }
    if (strongest == nullptr || strongestWind(*strongest) < kGustsKmph) return;
    double const kmph = strongestWind(*strongest);
    bool const isRunning = strongest->date <= now_;
    std::string const around = words_.clock().phrase(ClockRole::around, strongest->date);
    add(part, kmph >= kStormyKmph ? stormy : gusts,
        {isRunning ? words_.texts().format("brief.gustsNow", words_.wind(kmph))
                   : words_.texts().format("brief.gusts", words_.wind(kmph), around)});
  }

  void addUv() {
    Span const& span = spans_.front();
    HourlyForecast const* highest = nullptr;
    for (HourlyForecast const& hour : hoursOf(span)) {
      if (hour.has(WeatherDetailField::uvIndex) && (highest == nullptr || hour.uvIndex > highest->uvIndex))
        highest = &hour;
    }
    if (span.part != BriefPart::today || highest == nullptr || highest->uvIndex < kHighUv) return;
    add(span.part, highest->uvIndex >= kVeryHighUv ? veryHighUv : highUv,
        {words_.texts().format("brief.uv", highest->uvIndex)});
  }

  void addTrends() {
    Texts const& texts = words_.texts();
    TimeWords const& time = words_.time();
    if (auto const& change = trends_.temperature; change && !isCompared_ && change->day >= spans_.back().end)
      add(BriefPart::tomorrow, laterDays,
          {texts.format(change->byC > 0 ? "trend.warmer" : "trend.colder", time.weekday(change->day),
                        words_.degrees(change->byC))});
    if (auto const& passage = trends_.front; passage && passage->at < spans_.back().end && passage->at > now_)
      add(partAt(passage->at), front,
          {texts.format(passage->isCold ? "trend.coldFront" : "trend.warmFront",
                        words_.clock().phrase(ClockRole::around, passage->at))});
    if (trends_.pressure && trends_.pressure->changeHPa < 0) addPressure(trends_.pressure->tendency);
    for (WeatherEvent const& event : events_) {
      if (event.kind == EventKind::firstFrost && event.begin >= spans_.back().end)
        add(BriefPart::tomorrow, frost, {texts.format("trend.frost", time.weekday(event.begin))});
      if (event.kind == EventKind::droughtEnd && !isWet_ && event.begin >= spans_.back().end)
        add(BriefPart::tomorrow, frost, {texts.format("trend.dryUntil", time.weekday(event.begin))});
    }
  }

  void addPressure(PressureTendency tendency) {
    using enum PressureTendency;
    if (present_ && (tendency == fallingQuickly || tendency == fallingVeryRapidly))
      add(BriefPart::now, pressure, {std::string(words_.texts().text("trend.pressure.fallingQuickly"))});
  }

  Brief chosen() {
    std::vector<std::size_t> byRank(candidates_.size());
    for (std::size_t i = 0; i < byRank.size(); ++i) byRank[i] = i;
    std::ranges::stable_sort(byRank, {}, [&](std::size_t i) { return candidates_[i].rank; });
    byRank.resize(std::min(byRank.size(), kMostSentences));
    std::ranges::sort(byRank);
    Brief brief;
    std::vector<BriefPart> order{BriefPart::now};
    for (Span const& span : spans_) order.push_back(span.part);
    for (BriefPart const part : order) {
      std::vector<std::string> sentences;
      for (std::size_t const i : byRank) {
        if (candidates_[i].part == part) sentences.push_back(candidates_[i].text);
      }
      if (sentences.empty()) continue;
      brief[part] = words_.paragraph(sentences);
      brief.order.push_back(part);
    }
    return brief;
  }

  WeatherData const& weather_;
  BriefBeside const& beside_;
  Instant now_;
  Calendar const& calendar_;
  BriefWords words_;
  std::optional<Present> present_;
  std::vector<WeatherEvent> events_;
  Trends trends_;
  std::vector<Span> spans_;
  std::vector<Candidate> candidates_;
  std::set<std::string, std::less<>> said_;
  std::optional<double> felt_;  ///< °C, as told last
  bool isCompared_ = false;
  bool isWet_ = false;  ///< something that falls was told
};

}  // namespace

Brief weatherBrief(WeatherData const& weather, BriefBeside const& beside, Instant now, Units const& units,
                   Texts const& texts, Calendar const& fallback) {
  Calendar const calendar = calendarOf(weather, fallback);
  return Writer(weather, beside, now, units, texts, calendar).brief();
}

std::string briefText(Brief const& brief, Texts const& texts, std::string_view between) {
  std::string text;
  for (BriefPart const part : brief.order) {
    if (!text.empty()) text += between;
    text += texts.format("brief.named", texts.text("brief.part." + std::string(enumName(part))), brief[part]);
  }
  return text;
}

}  // namespace nimbara
