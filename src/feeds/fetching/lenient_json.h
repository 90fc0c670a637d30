// Members of a document that may be anything: what is not of the expected kind reads as absent and spoils
// nothing around it. For sources that instantiate `decodeJson`; no part of any interface.
#pragma once

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <optional>

namespace nimbara {

template <class T>
struct Lenient {
  std::optional<T> value;
};

/// A number, also one that is written as a text.
struct LenientNumber {
  std::optional<double> value;
};

}  // namespace nimbara

namespace nimbara::json_detail {

template <class T>
bool read(dom::element element, Lenient<T>& out, Failure&) {
  Failure ignored;
  if (!read(element, out.value.emplace(), ignored)) out.value.reset();
  return true;
}

inline bool read(dom::element element, LenientNumber& out, Failure&) {
  std::string_view text;
  double number = 0;
  if (element.get(number) == simdjson::SUCCESS) {
    out.value = number;
  } else if (element.get(text) == simdjson::SUCCESS) {
    out.value = parseDouble(trimmed(text));
  }
  return true;
}

}  // namespace nimbara::json_detail
