#include "cli/pages/pass_table.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/compass_point.h"
#include "providers/common/compass.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

enum Column : std::uint8_t { rises, highest, sets, visible, clouds, columns };
using Row = std::array<std::string, columns>;

class PassPage {
 public:
  PassPage(std::vector<ListedPass> const& passes, PassTable const& table) : passes_(passes), table_(table) {}

  std::string text() const {
    if (passes_.empty()) return table_.style.text(emptySentence()) + "\n";
    std::vector<Row> rows{titles()};
    std::ranges::transform(passes_, std::back_inserter(rows), [this](auto const& pass) { return row(pass); });
    std::array<int, columns> widths{};
    for (Row const& row : rows) {
      for (std::size_t i = 0; i < columns; ++i) widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
    std::string out =
        painted(table_.texts.format("passes.heading", table_.satellite, table_.place), Colour::bold);
    out += painted(line(rows.front(), widths), Colour::dim);
    std::optional<Date> day;
    for (std::size_t i = 0; i < passes_.size(); ++i) {
      Instant const rise = passes_[i].pass.rise.time;
      if (day != table_.calendar.day(rise)) {
        out += painted(table_.words.format(rise, table_.texts.text("report.dateFormat")), Colour::plain);
      }
      day = table_.calendar.day(rise);
      bool const isVisible = passes_[i].pass.visible.has_value();
      out += painted(line(rows[i + 1], widths), isVisible ? Colour::bold : Colour::plain);
    }
    return out;
  }

 private:
  std::string emptySentence() const {
    return table_.texts.format(table_.isVisibleOnly ? "passes.noneVisible" : "passes.none", table_.satellite,
                               table_.place, table_.days);
  }

  std::string painted(std::string const& line, Colour colour) const {
    return table_.style.painted(table_.style.text(line), colour) + "\n";
  }

  Row titles() const {
    auto const text = [this](std::string_view key) { return std::string(table_.texts.text(key)); };
    return {text("passes.rises"), text("passes.highest"), text("passes.sets"), text("passes.visible"),
            text("report.clouds")};
  }

  std::string point(double azimuth) const { return compassPoint(compassPoint(azimuth), table_.texts); }

  /// "6:10 PM WNW", the points below each other.
  std::string horizonText(PassMoment const& moment) const {
    int width = 0;
    for (int sixteenth = 0; sixteenth < 16; ++sixteenth) {
      width = std::max(width, displayWidth(point(sixteenth * 22.5)));
    }
    return table_.words.clock(moment.time) + " " + fitted(point(moment.azimuth), width);
  }

  std::string highestText(PassMoment const& moment) const {
    return table_.words.clock(moment.time) + fitted(roundedText(moment.elevation) + "°", 4, Align::right) +
           " " + fitted(point(moment.azimuth), 3);
  }

  /// From when to when, or why not: as the pass is at its highest.
  std::string visibleText(SatellitePass const& pass) const {
    if (pass.visible) {
      return table_.words.clock(pass.visible->from) + " – " + table_.words.clock(pass.visible->to);
    }
    bool const isLow = pass.culmination.elevation < table_.visibleAbove;
    std::string_view const why = !pass.skyDark ? "bright" : !pass.sunlit ? "shadow" : isLow ? "low" : "";
    return why.empty() ? "" : std::string(table_.texts.text("passes.why." + std::string(why)));
  }

  Row row(ListedPass const& listed) const {
    auto const& [name, pass, cloudCover] = listed;
    return {horizonText(pass.rise), highestText(pass.culmination), horizonText(pass.set), visibleText(pass),
            cloudCover ? std::to_string(*cloudCover) + " %" : std::string()};
  }

  /// Times end below each other, words begin so.
  static std::string line(Row const& row, std::array<int, columns> const& widths) {
    std::string out;
    for (std::size_t i = 0; i < columns; ++i) {
      out += "  " + fitted(row[i], widths[i], i == visible ? Align::left : Align::right);
    }
    out.erase(out.find_last_not_of(' ') + 1);
    return out;
  }

  std::vector<ListedPass> const& passes_;
  PassTable const& table_;
};

}  // namespace

std::string passTable(std::vector<ListedPass> const& passes, PassTable const& table) {
  return PassPage(passes, table).text();
}

}  // namespace nimbara
