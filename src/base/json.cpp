#include "base/json.h"

#include "base/json_codec.h"

#include <charconv>
#include <cmath>

namespace nimbara {

namespace {

/// Digits alone are read back as a whole number, which has to fit into 64 bits.
constexpr double kLeastWithExponent = 0x1p63;

}  // namespace

void JsonWriter::value(double number) {
  if (!std::isfinite(number)) return null();
  char buffer[32];
  char* const end = buffer + sizeof buffer;
  auto const result = std::abs(number) < kLeastWithExponent
                          ? std::to_chars(buffer, end, number + 0.0)
                          : std::to_chars(buffer, end, number, std::chars_format::scientific);
  out_.append(buffer, result.ptr);
}

void JsonWriter::value(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out_ += '"';
  for (char const c : text) {
    auto const code = static_cast<unsigned char>(c);
    switch (c) {
      case '"':
        out_ += "\\\"";
        break;
      case '\\':
        out_ += "\\\\";
        break;
      case '\n':
        out_ += "\\n";
        break;
      case '\t':
        out_ += "\\t";
        break;
      case '\r':
        out_ += "\\r";
        break;
      default:
        if (code >= 0x20) {
          out_ += c;
        } else {
          out_ += "\\u00";
          out_ += kDigits[code >> 4];
          out_ += kDigits[code & 15];
        }
    }
  }
  out_ += '"';
}

void JsonWriter::key(std::string_view key) {
  if (!first_) out_ += ',';
  value(key);
  out_ += ':';
}

template Result<std::map<std::string, std::string, std::less<>>, DecodeError> decodeJson(std::string_view);

}  // namespace nimbara
