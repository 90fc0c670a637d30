// The JSON form of records, declared once beside the record as a table of (key, pointer to member):
//
//   template <> inline constexpr auto jsonFields<Astronomy> = FieldList{field("sunrise",
//   &Astronomy::sunrise), …};
//
// `encodeJson` walks the table here; `decodeJson` is declared here and instantiated by the sources that
// include json_codec.h, the only header that knows the JSON library.
//
// Rules of reading: a required member must be present; `std::optional` members and those declared by
// `fieldOr` may be absent or null; unknown keys are ignored; of equal keys the last one counts.
#ifndef NIMBARA_BASE_JSON_JSON_H
#define NIMBARA_BASE_JSON_JSON_H

#include "base/enum_names.h"
#include "base/field_list.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "base/uuid.h"

#include <chrono>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace nimbara {

/// Why a document is not the record that was asked for, and where: "/weather[2]/hourly[0]/tempC".
struct DecodeError {
  std::string path;
  std::string reason;

  std::string text() const { return path.empty() ? reason : path + ": " + reason; }
  bool operator==(DecodeError const&) const = default;
};

template <class Record, class Member>
struct JsonField {
  std::string_view key;
  Member Record::* member;
  bool required;
};

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class Record, class Member>
constexpr JsonField<Record, Member> field(std::string_view key, Member Record::* member) {
  return {key, member, !isOptional<Member>};
}

/// A field that keeps its default value when the document lacks it.
template <class Record, class Member>
constexpr JsonField<Record, Member> fieldOr(std::string_view key, Member Record::* member) {
  return {key, member, false};
}

template <class T>
inline constexpr std::nullptr_t jsonFields = nullptr;

template <class T>
concept JsonRecord = !std::is_same_v<decltype(jsonFields<T>), std::nullptr_t const>;

/// Reads one document. Any input may be given; whatever is not the record gives an error.
template <class T>
Result<T, DecodeError> decodeJson(std::string_view document);

/// Appends JSON text to a buffer. Numbers take their shortest exact form; what is not finite is written as
/// null.
class JsonWriter {
 public:
  void value(std::string_view text);
  void value(std::string const& text) { value(std::string_view(text)); }
  void value(char const* text) { value(std::string_view(text)); }
  void value(bool flag) { out_ += flag ? "true" : "false"; }
  void value(double number);
  template <std::integral Integer>
  void value(Integer number) {
    out_ += std::to_string(number);
  }
  void value(Instant instant) { value(formatIso8601(instant)); }
  void value(Uuid const& uuid) { value(uuid.text()); }
  void null() { out_ += "null"; }

  template <NamedEnum E>
  void value(E enumerator) {
    value(enumName(enumerator));
  }

  template <NamedEnum E>
  void value(EnumSet<E> set) {
    out_ += '[';
    char const* separator = "";
    for (std::size_t i = 0; i < enumNames<E>.size(); ++i) {
      if (!set.contains(static_cast<E>(i))) continue;
      out_ += separator;
      value(enumNames<E>[i]);
      separator = ",";
    }
    out_ += ']';
  }

  template <class T>
  void value(std::vector<T> const& list) {
    out_ += '[';
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (i > 0) out_ += ',';
      value(list[i]);
    }
    out_ += ']';
  }

  template <class T, class Less>
  void value(std::map<std::string, T, Less> const& members) {
    beginObject();
    for (auto const& [name, content] : members) member(name, content);
    endObject();
  }

  template <class T>
  void value(std::optional<T> const& optional) {
    optional ? value(*optional) : null();
  }

  template <JsonRecord T>
  void value(T const& record) {
    beginObject();
    jsonFields<T>.apply([&](auto const&... fields) { (member(fields.key, record.*(fields.member)), ...); });
    endObject();
  }

  /// For documents that no record describes: beginObject, member…, endObject.
  void beginObject() {
    out_ += '{';
    first_ = true;
  }
  void endObject() {
    out_ += '}';
    first_ = false;
  }
  /// The like for lists: beginList, then separate and a value for each element, endList.
  void beginList() {
    out_ += '[';
    first_ = true;
  }
  void separate() {
    if (!first_) out_ += ',';
    first_ = false;
  }
  void endList() {
    out_ += ']';
    first_ = false;
  }
  /// Absent optionals are left out.
  template <class T>
  void member(std::string_view key, T const& content) {
    if constexpr (isOptional<T>) {
      if (!content) return;
    }
    this->key(key);
    value(content);
    first_ = false;
  }
  /// Absent optionals are written as null.
  template <class T>
  void memberOrNull(std::string_view key, std::optional<T> const& content) {
    this->key(key);
    value(content);
    first_ = false;
  }
  void key(std::string_view key);

  std::string take() { return std::move(out_); }

 private:
  std::string out_;
  bool first_ = true;
};

template <class T>
std::string encodeJson(T const& value) {
  JsonWriter writer;
  writer.value(value);
  return writer.take();
}

}  // namespace nimbara

#endif  // NIMBARA_BASE_JSON_JSON_H
