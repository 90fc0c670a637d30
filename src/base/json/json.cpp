#include "base/json/json.h"

#include <charconv>
#include <cmath>

namespace nimbara {

namespace {

/// Digits alone are read back as a whole number, which has to fit into 64 bits.
constexpr double kLeastWithExponent = 0x1p63;

void appendEscaped(std::string& out, unsigned char code) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += "\\u00";
  out += kDigits[code >> 4];
  out += kDigits[code & 15];
}

/// U+0080 to U+009F, which JSON allows as they are and terminals obey.
bool startsHighControl(std::string_view text) {
  return text[0] == '\xC2' && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
}

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
  out_ += '"';
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (char const c = text[i]; c) {
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
        if (startsHighControl(text.substr(i))) {
          appendEscaped(out_, static_cast<unsigned char>(text[++i]));
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
          appendEscaped(out_, static_cast<unsigned char>(c));
        } else {
          out_ += c;
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

}  // namespace nimbara
