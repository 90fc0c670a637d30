#include "feeds/cap_text.h"

#include "base/text.h"

namespace nimbara {

namespace {

constexpr int kBuddhistYears = 543;
constexpr int kFirstBuddhistYear = 2400;
constexpr std::size_t kYearDigits = 4;

/// DEL, and of the first range all but what divides lines and words.
bool isControl(char c) {
  auto const byte = static_cast<unsigned char>(c);
  return byte == 0x7F || (byte < 0x20 && c != '\n' && c != '\t' && c != '\r');
}

/// U+0080 to U+009F, which are two bytes.
bool isSecondRangeControl(std::string_view text) {
  auto const second = text.size() < 2 ? 0U : static_cast<unsigned char>(text[1]);
  return static_cast<unsigned char>(text[0]) == 0xC2 && second >= 0x80 && second <= 0x9F;
}

/// The text with the year of the common era in it.
std::string inCommonEra(std::string_view text) {
  int year = 0;
  if (text.size() <= kYearDigits || text[kYearDigits] != '-') return std::string(text);
  for (char const c : text.substr(0, kYearDigits)) {
    if (c < '0' || c > '9') return std::string(text);
    year = year * 10 + (c - '0');
  }
  if (year < kFirstBuddhistYear) return std::string(text);
  return std::to_string(year - kBuddhistYears) + std::string(text.substr(kYearDigits));
}

}  // namespace

std::string capProse(std::string_view text) {
  std::string prose;
  prose.reserve(text.size());
  while (!text.empty()) {
    bool const isPair = isSecondRangeControl(text);
    if (!isPair && !isControl(text[0])) prose += text[0];
    text.remove_prefix(isPair ? 2 : 1);
  }
  return prose;
}

std::optional<Instant> capDate(std::string_view text) {
  return parseIso8601(inCommonEra(trimmed(text)));
}

std::vector<CapReference> capReferences(std::string_view text) {
  std::string blanks(text);
  std::ranges::replace_if(blanks, [](char c) { return c == '\n' || c == '\t' || c == '\r'; }, ' ');
  std::vector<CapReference> references;
  for (std::string_view const one : split(blanks, ' ')) {
    auto const parts = split(one, ',');
    if (parts.size() < 2 || parts[1].empty()) continue;
    references.push_back(
        {capProse(parts[0]), capProse(parts[1]), parts.size() > 2 ? capDate(parts[2]) : std::nullopt});
  }
  return references;
}

}  // namespace nimbara
