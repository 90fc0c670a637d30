// Reading of records by their field tables, on simdjson. Included only by the sources that instantiate
// `decodeJson` for their records (one line each); nobody else sees the JSON library.
//
// A record's keys usually come in the order of its table, so the search for a key starts behind the last one
// found.
#pragma once

#include "base/json/json.h"
#include "base/json/simdjson_dom.h"
#include "base/text/clean_text.h"

#include <bitset>
#include <limits>

namespace nimbara::json_detail {

namespace dom = simdjson::dom;

constexpr std::size_t longest(std::span<std::string_view const> texts) {
  std::size_t length = 0;
  for (std::string_view const text : texts) length = std::max(length, text.size());
  return length;
}

/// Where reading failed. Parts of the path are gathered from the inside outwards, only after a failure.
struct Failure {
  std::string path;
  std::string reason;

  bool because(std::string_view text) {
    reason = text;
    return false;
  }
  bool within(std::string_view key) {
    path = "/" + std::string(key) + path;
    return false;
  }
  bool within(std::size_t index) {
    path = "[" + std::to_string(index) + "]" + path;
    return false;
  }
};

inline bool read(dom::element element, std::string& out, Failure& failure) {
  std::string_view text;
  if (element.get(text) != simdjson::SUCCESS) return failure.because("a text is expected");
  out = withoutControls(text);
  return true;
}

inline bool read(dom::element element, double& out, Failure& failure) {
  return element.get(out) == simdjson::SUCCESS || failure.because("a number is expected");
}

inline bool read(dom::element element, bool& out, Failure& failure) {
  return element.get(out) == simdjson::SUCCESS || failure.because("true or false is expected");
}

/// Whole numbers may also be written as 3.0; what does not fit is refused.
template <std::integral Integer>
bool read(dom::element element, Integer& out, Failure& failure) {
  std::int64_t whole = 0;
  if (element.get(whole) != simdjson::SUCCESS) {
    double number = 0;
    if (element.get(number) != simdjson::SUCCESS || number != std::trunc(number) || std::abs(number) > 9e15) {
      return failure.because("a whole number is expected");
    }
    whole = static_cast<std::int64_t>(number);
  }
  if (whole < std::numeric_limits<Integer>::min() ||
      whole > static_cast<std::int64_t>(std::numeric_limits<Integer>::max())) {
    return failure.because("the number is out of range");
  }
  out = static_cast<Integer>(whole);
  return true;
}

/// Types that a record writes as a text.
template <class T>
bool readText(dom::element element, T& out, Failure& failure, std::string_view expected, auto parse) {
  std::string_view text;
  if (element.get(text) != simdjson::SUCCESS) return failure.because(expected);
  auto const parsed = parse(text);
  if (!parsed) return failure.because(expected);
  out = *parsed;
  return true;
}

inline bool read(dom::element element, Instant& out, Failure& failure) {
  return readText(element, out, failure, "a date in ISO 8601 is expected", parseIso8601);
}

inline bool read(dom::element element, Uuid& out, Failure& failure) {
  return readText(element, out, failure, "a UUID is expected", Uuid::parse);
}

template <NamedEnum E>
bool read(dom::element element, E& out, Failure& failure) {
  return readText(element, out, failure, "the name of a known case is expected", enumFromName<E>);
}

/// Names that a later version may add are skipped.
template <NamedEnum E>
bool read(dom::element element, EnumSet<E>& out, Failure& failure) {
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return failure.because("a list is expected");
  out = {};
  for (dom::element const member : list) {
    std::string_view text;
    if (member.get(text) != simdjson::SUCCESS) return failure.because("a list of texts is expected");
    if (auto const value = enumFromName<E>(text)) out.insert(*value);
  }
  return true;
}

template <class T>
bool read(dom::element element, std::optional<T>& out, Failure& failure);
template <JsonRecord T>
bool read(dom::element element, T& out, Failure& failure);
template <class T, class Less>
bool read(dom::element element, std::map<std::string, T, Less>& out, Failure& failure);

template <class T>
bool read(dom::element element, std::vector<T>& out, Failure& failure) {
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return failure.because("a list is expected");
  out.clear();
  out.reserve(list.size());
  for (dom::element const member : list) {
    if (!read(member, out.emplace_back(), failure)) return failure.within(out.size() - 1);
  }
  return true;
}

template <class T>
bool read(dom::element element, std::optional<T>& out, Failure& failure) {
  out.reset();
  return element.is_null() || read(element, out.emplace(), failure);
}

template <class T, class Less>
bool read(dom::element element, std::map<std::string, T, Less>& out, Failure& failure) {
  dom::object object;
  if (element.get(object) != simdjson::SUCCESS) return failure.because("an object is expected");
  for (auto const [key, member] : object) {
    if (!read(member, out[std::string(key)], failure)) return failure.within(key);
  }
  return true;
}

template <class T, std::size_t index>
bool readField(dom::element element, T& record, Failure& failure) {
  constexpr auto const& entry = jsonFields<T>.template at<index>();
  if (!entry.required && element.is_null()) return true;
  return read(element, record.*(entry.member), failure);
}

/// The field table of a record as arrays that can be indexed at run time.
template <class T>
struct FieldTable {
  static constexpr std::size_t size = decltype(jsonFields<T>)::size;
  using Reader = bool (*)(dom::element, T&, Failure&);

  static constexpr std::array<std::string_view, size> keys = jsonFields<T>.apply(
      [](auto const&... entry) { return std::array<std::string_view, size>{entry.key...}; });
  static constexpr std::array<bool, size> required =
      jsonFields<T>.apply([](auto const&... entry) { return std::array<bool, size>{entry.required...}; });
  static constexpr std::array<Reader, size> readers =
      []<std::size_t... index>(std::index_sequence<index...>) {
        return std::array<Reader, size>{&readField<T, index>...};
      }(std::make_index_sequence<size>{});

  static constexpr std::size_t kLongestKey = longest(keys);
  static constexpr std::array<bool, kLongestKey + 1> hasKeyOfLength = [] {
    std::array<bool, kLongestKey + 1> lengths{};
    for (std::string_view const key : keys) lengths[key.size()] = true;
    return lengths;
  }();

  /// The index of `key`, or `size`. Most keys that nobody asks for differ in their length already.
  static std::size_t find(std::string_view key, std::size_t start) {
    if (key.size() > kLongestKey || !hasKeyOfLength[key.size()]) return size;
    for (std::size_t step = 0; step < size; ++step) {
      std::size_t const index = start + step < size ? start + step : start + step - size;
      if (keys[index] == key) return index;
    }
    return size;
  }
};

template <JsonRecord T>
bool read(dom::element element, T& out, Failure& failure) {
  using Table = FieldTable<T>;
  dom::object object;
  if (element.get(object) != simdjson::SUCCESS) return failure.because("an object is expected");
  std::bitset<Table::size> seen;
  std::size_t expected = 0;
  for (auto const [key, member] : object) {
    std::size_t const index = Table::find(key, expected);
    if (index == Table::size) continue;
    if (!Table::readers[index](member, out, failure)) return failure.within(key);
    seen.set(index);
    expected = index + 1 == Table::size ? 0 : index + 1;
  }
  for (std::size_t index = 0; index < Table::size; ++index) {
    if (Table::required[index] && !seen[index]) {
      failure.because("the key is missing");
      return failure.within(Table::keys[index]);
    }
  }
  return true;
}

/// One parser a thread: its buffers are worth keeping between documents, up to a size that is no burden.
inline Result<dom::element, DecodeError> parseDocument(std::string_view document) {
  thread_local dom::parser parser(std::size_t{64} << 20);
  dom::element root;
  if (auto const error = parser.parse(document.data(), document.size()).get(root)) {
    return std::unexpected(
        DecodeError{"", "it is not JSON (" + std::string(simdjson::error_message(error)) + ")"});
  }
  return root;
}

}  // namespace nimbara::json_detail

namespace nimbara {

template <class T>
Result<T, DecodeError> decodeJson(std::string_view document) {
  auto const root = json_detail::parseDocument(document);
  if (!root) return std::unexpected(root.error());
  T record{};
  json_detail::Failure failure;
  if (!json_detail::read(*root, record, failure))
    return std::unexpected(DecodeError{failure.path, failure.reason});
  return record;
}

}  // namespace nimbara
