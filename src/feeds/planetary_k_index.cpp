#include "feeds/planetary_k_index.h"

#include "base/json_codec.h"
#include "base/number.h"
#include "base/text.h"

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

}  // namespace

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
