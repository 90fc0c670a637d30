#include "providers/wttr/wttr_parser.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

namespace dom = simdjson::dom;

void readLeniently(dom::element element, std::string& out) {
  std::string_view text;
  double number = 0;
  if (element.get(text) == simdjson::SUCCESS) {
    out = oneLine(trimmed(text));
  } else if (element.get(number) == simdjson::SUCCESS) {
    out = plainDecimal(number);
  }
}

/// Members that are the program's own and that no service sends.
template <class T>
void readLeniently(dom::element, std::optional<T>&) {}
template <NamedEnum E>
void readLeniently(dom::element, EnumSet<E>&) {}

template <JsonRecord T>
void readLeniently(dom::element element, T& out);

template <class T>
void readLeniently(dom::element element, std::vector<T>& out) {
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return;
  for (dom::element const member : list) {
    if (member.is_object()) readLeniently(member, out.emplace_back());
  }
}

template <JsonRecord T>
void readLeniently(dom::element element, T& out) {
  dom::object object;
  if (element.get(object) != simdjson::SUCCESS) return;
  auto const readField = [&](auto const& entry) {
    dom::element member;
    if (object[entry.key].get(member) == simdjson::SUCCESS) readLeniently(member, out.*(entry.member));
  };
  jsonFields<T>.apply([&](auto const&... entry) { (readField(entry), ...); });
}

/// The service's own words, where it wrote any.
DecodeError notJson(std::string_view body, DecodeError const& error) {
  constexpr std::size_t kLongestWords = 120;
  std::string const words = oneLine(body, kLongestWords);
  if (words.empty() || words.find_first_of("<{[") == 0) return error;
  return {"", "it is not a forecast but the text \"" + words + "\""};
}

}  // namespace

Result<WttrResponse, DecodeError> parseWttr(std::string_view body) {
  auto const document = json_detail::parseDocument(body);
  if (!document) return std::unexpected(notJson(body, document.error()));
  WttrResponse response;
  readLeniently(*document, response);
  if (response.weather.empty() && response.currentCondition.empty()) {
    return std::unexpected(DecodeError{"", "/weather and /current_condition are both empty"});
  }
  return response;
}

}  // namespace nimbara
