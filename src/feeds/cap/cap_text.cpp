#include "feeds/cap/cap_text.h"

#include "base/text/clean_text.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

constexpr int kBuddhistYears = 543;
constexpr int kFirstBuddhistYear = 2400;
constexpr std::size_t kYearDigits = 4;

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

std::optional<Instant> capDate(std::string_view text) {
  constexpr std::string_view kMidnight = "24:00:00";
  constexpr std::size_t kDateLength = std::string_view("2026-11-22T").size();
  std::string date = inCommonEra(trimmed(text));
  bool const isEndOfDay =
      date.size() > kDateLength && date.compare(kDateLength, kMidnight.size(), kMidnight) == 0;
  if (!isEndOfDay) return parseIso8601(date);
  auto const begin = parseIso8601(date.replace(kDateLength, 2, "00"));
  return begin.transform([](Instant instant) { return instant + std::chrono::days(1); });
}

std::vector<CapReference> capReferences(std::string_view text) {
  std::string blanks;
  for (char c : text) {
    if (c == '\n' || c == '\t' || c == '\r') c = ' ';
    // "sender, identifier, sent": some write lists so.
    bool const isAfterComma = c == ' ' && blanks.ends_with(',');
    if (!isAfterComma) blanks += c;
  }
  std::vector<CapReference> references;
  for (std::string_view const one : split(blanks, ' ')) {
    auto const parts = split(one, ',');
    if (parts.size() < 2 || parts[1].empty()) continue;
    references.push_back({withoutControls(parts[0]), withoutControls(parts[1]),
                          parts.size() > 2 ? capDate(parts[2]) : std::nullopt});
  }
  return references;
}

}  // namespace nimbara
