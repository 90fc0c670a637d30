#include "cli/pages/kp_page.h"

#include "base/text/number.h"
#include "base/words/time_words.h"
#include "feeds/space/kp_scale.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace nimbara {

namespace {

using std::chrono::minutes;

constexpr minutes kBin{180};
constexpr int kBinsADay = 8;
constexpr int kFirstStormLevel = 3;

class KpPage {
 public:
  KpPage(KpOutlook const& outlook, Texts const& texts, Calendar const& calendar, Instant now,
         Style const& style)
      : outlook_(outlook),
        texts_(texts),
        calendar_(calendar),
        now_(now),
        words_(texts, calendar),
        style_(style) {}

  std::string text() const {
    std::string out = style_.painted(style_.text(summary()), Colour::bold) + "\n";
    if (!outlook_.place) out += style_.text(levelText("meaning", outlook_.now)) + "\n";
    auto const highest = std::ranges::max_element(outlook_.forecast, {}, &KpReading::kp);
    if (highest != outlook_.forecast.end()) {
      out += style_.text(texts_.format("kp.highest", number(highest->kp), word(highest->kp),
                                       words_.moment(highest->begin, now_))) +
             "\n";
    }
    return out + table();
  }

 private:
  std::string number(double kp) const {
    std::string text = fixedDecimal(kp, 2);
    return text.replace(text.find('.'), 1, texts_.decimalPoint());
  }

  std::string levelText(std::string_view kind, double kp) const {
    return std::string(texts_.text("desktop.kp." + std::string(kind) + "." + std::to_string(kpLevel(kp))));
  }

  /// Within a sentence.
  std::string word(double kp) const {
    std::string text = levelText("word", kp);
    if (!text.empty() && text.front() >= 'A' && text.front() <= 'Z') text.front() += 'a' - 'A';
    return text;
  }

  std::string summary() const {
    if (!outlook_.place) return texts_.format("kp.now", number(outlook_.now), word(outlook_.now));
    constexpr std::string_view kKeys[] = {"kp.aurora.none", "kp.aurora.low", "kp.aurora.high"};
    auto const sight = static_cast<std::size_t>(auroraSight(*outlook_.place, outlook_.now));
    double const latitude = outlook_.place->latitude;
    std::string const where = roundedText(std::abs(latitude)) + (latitude < 0 ? "°S" : "°N");
    return texts_.format(kKeys[sight], number(outlook_.now), word(outlook_.now), where);
  }

  /// Minutes since the day's beginning; the hour that a change of clocks repeats counts twice.
  minutes timeOfDay(Instant instant) const {
    return std::chrono::floor<minutes>(instant - calendar_.startOfDay(calendar_.day(instant)));
  }

  /// A row for each day, a column for each three hours of it.
  std::string table() const {
    std::map<Date, std::map<int, std::string>> days;
    add(outlook_.history, "", days);
    add(outlook_.forecast, "~", days);
    if (days.empty()) return {};
    std::string_view const key = outlook_.forecast.empty() ? "kp.table" : "kp.tableForecast";
    std::string out =
        "\n" + style_.text(texts_.text(key)) + "\n" + style_.painted(titles(), Colour::dim) + "\n";
    for (auto const& [day, cells] : days) {
      out += style_.cell(words_.format(calendar_.startOfDay(day), "EEE d"), kNameWidth);
      for (int bin = 0; bin < kBinsADay; ++bin) {
        auto const cell = cells.find(bin);
        out += cell == cells.end() ? std::string(kCellWidth, ' ') : cell->second;
      }
      out.erase(out.find_last_not_of(' ') + 1);
      out += "\n";
    }
    return out;
  }

  void add(std::vector<KpReading> const& readings, std::string const& mark,
           std::map<Date, std::map<int, std::string>>& days) const {
    for (KpReading const& reading : readings) {
      int const bin = std::min(static_cast<int>(timeOfDay(reading.begin) / kBin), kBinsADay - 1);
      std::string const cell = style_.cell(mark + number(reading.kp), kCellWidth, Align::right);
      bool const isStorm = kpLevel(reading.kp) >= kFirstStormLevel;
      days[calendar_.day(reading.begin)][bin] = isStorm ? style_.painted(cell, Colour::warning) : cell;
    }
  }

  /// When the three hours begin by the reader's clock, which is not where they do in Greenwich.
  std::string titles() const {
    Instant const any = (outlook_.history.empty() ? outlook_.forecast : outlook_.history).back().begin;
    Instant const first = any - timeOfDay(any) / kBin * kBin;
    bool const isFullHour = timeOfDay(first) % std::chrono::hours(1) == minutes(0);
    std::string out(kNameWidth, ' ');
    for (int bin = 0; bin < kBinsADay; ++bin) {
      Instant const begin = first + bin * kBin;
      out += style_.cell(isFullHour ? words_.hourColumn(begin) : words_.format(begin, "H:mm"), kCellWidth,
                         Align::right);
    }
    return out;
  }

  static constexpr int kNameWidth = 8;
  static constexpr int kCellWidth = 8;

  KpOutlook const& outlook_;
  Texts const& texts_;
  Calendar const& calendar_;
  Instant now_;
  TimeWords words_;
  Style const& style_;
};

}  // namespace

std::string kpPage(KpOutlook const& outlook, Texts const& texts, Calendar const& calendar, Instant now,
                   Style const& style) {
  return KpPage(outlook, texts, calendar, now, style).text();
}

}  // namespace nimbara
