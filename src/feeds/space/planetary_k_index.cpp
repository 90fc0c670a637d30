#include "feeds/space/planetary_k_index.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

namespace dom = simdjson::dom;

std::optional<double> numberIn(std::string_view text) {
  return parseDouble(trimmed(text));
}

bool isRowOfTexts(dom::element element) {
  dom::array row;
  return element.get(row) == simdjson::SUCCESS &&
         std::ranges::all_of(row, [](dom::element field) { return field.is_string(); });
}

std::optional<double> kpOfRow(dom::element row) {
  std::string_view text;
  if (row.at(1).get(text) != simdjson::SUCCESS) return std::nullopt;
  return numberIn(text);
}

std::optional<double> kpOfObject(dom::element object) {
  // The forecast product beside this one spells it in lower case.
  for (std::string_view const key : {"Kp", "kp"}) {
    dom::element member;
    if (object.at_key(key).get(member) != simdjson::SUCCESS) continue;
    double number = 0;
    if (member.get(number) == simdjson::SUCCESS) return number;
    std::string_view text;
    return member.get(text) == simdjson::SUCCESS ? numberIn(text) : std::nullopt;
  }
  return std::nullopt;
}

/// The last of the elements from `first` on that has a value.
std::optional<double> newest(std::vector<dom::element> const& elements, std::size_t first,
                             std::optional<double> (*valueOf)(dom::element)) {
  for (std::size_t i = elements.size(); i > first; --i) {
    if (auto const value = valueOf(elements[i - 1])) return value;
  }
  return std::nullopt;
}

std::string_view textOf(dom::element element) {
  std::string_view text;
  return element.get(text) == simdjson::SUCCESS ? text : std::string_view();
}

/// "2026-02-03 00:00:00", or with a T between; always UTC.
std::optional<Instant> timeOf(dom::element element) {
  return parseIso8601(std::string(trimmed(textOf(element))) + "Z");
}

std::optional<double> valueOf(dom::element element) {
  double number = 0;
  if (element.get(number) == simdjson::SUCCESS) return number;
  return numberIn(textOf(element));
}

KpKind kindOf(dom::element element) {
  return enumFromName<KpKind>(trimmed(textOf(element))).value_or(KpKind::observed);
}

/// The columns of an entry, which only the forecast has three of.
struct Columns {
  std::optional<dom::element> time;
  std::optional<dom::element> kp;
  std::optional<dom::element> kind;
};

Columns columnsOfObject(dom::object const& object) {
  Columns columns;
  for (auto const& [key, value] : object) {
    if (key == "time_tag") columns.time = value;
    if (key == "Kp" || key == "kp") columns.kp = value;
    if (key == "observed") columns.kind = value;
  }
  return columns;
}

Columns columnsOfRow(dom::array const& row) {
  std::vector<dom::element> const fields(row.begin(), row.end());
  Columns columns;
  if (!fields.empty()) columns.time = fields[0];
  if (fields.size() > 1) columns.kp = fields[1];
  if (fields.size() > 2) columns.kind = fields[2];
  return columns;
}

Columns columnsOf(dom::element element) {
  if (dom::object object; element.get(object) == simdjson::SUCCESS) return columnsOfObject(object);
  if (dom::array row; element.get(row) == simdjson::SUCCESS) return columnsOfRow(row);
  return {};
}

std::optional<KpReading> readingOf(dom::element element) {
  constexpr double kHighest = 9;
  auto const [time, kp, kind] = columnsOf(element);
  auto const begin = time ? timeOf(*time) : std::nullopt;
  auto const value = kp ? valueOf(*kp) : std::nullopt;
  if (!begin || !value || !(*value >= 0 && *value <= kHighest)) return std::nullopt;
  return KpReading{*begin, *value, kind ? kindOf(*kind) : KpKind::observed};
}

}  // namespace

Result<std::vector<KpReading>, DecodeError> kpReadings(std::string_view body) {
  auto const root = json_detail::parseDocument(body);
  if (!root) return std::unexpected(root.error());
  dom::array list;
  if (root->get(list) != simdjson::SUCCESS) return std::unexpected(DecodeError{"", "expected a list"});
  std::vector<KpReading> readings;
  for (dom::element const element : list) {
    if (auto const reading = readingOf(element)) readings.push_back(*reading);
  }
  if (readings.empty()) return std::unexpected(DecodeError{"", "no value"});
  std::ranges::stable_sort(readings, {}, &KpReading::begin);
  auto const repeated = std::ranges::unique(readings, {}, &KpReading::begin);
  readings.erase(repeated.begin(), repeated.end());
  return readings;
}

std::optional<double> newestKp(std::string_view body) {
  auto const root = json_detail::parseDocument(body);
  dom::array list;
  if (!root || root->get(list) != simdjson::SUCCESS) return std::nullopt;
  std::vector<dom::element> const elements(list.begin(), list.end());
  if (std::ranges::all_of(elements, isRowOfTexts)) return newest(elements, 1, kpOfRow);
  bool const areObjects = std::ranges::all_of(elements, [](dom::element e) { return e.is_object(); });
  return areObjects ? newest(elements, 0, kpOfObject) : std::nullopt;
}

}  // namespace nimbara
