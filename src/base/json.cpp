#include "base/json.h"

#include "base/json_codec.h"

#include <charconv>

namespace nimbara {

void JsonWriter::value(double number) {
  if (!std::isfinite(number)) return null();
  char buffer[32];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, number + 0.0);
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
