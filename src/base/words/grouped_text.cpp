#include "base/words/grouped_text.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::size_t kGroup = 3;

struct GroupRow {
  std::string_view language;
  std::string_view separator;
  std::size_t leastDigits;
};

/// As Unicode's locale data have it.
constexpr auto kGroups = std::to_array<GroupRow>({{"en", ",", 4},
                                                  {"de", ".", 4},
                                                  {"fr", "\u202F", 4},
                                                  {"es", "\u00A0", 5},
                                                  {"it", ".", 4},
                                                  {"pt", ".", 4},
                                                  {"nl", ".", 4},
                                                  {"pl", "\u00A0", 5},
                                                  {"ja", ",", 4},
                                                  {"zh", ",", 4}});

}  // namespace

std::string groupedText(std::string number, Texts const& texts) {
  auto const* const row = std::ranges::find(kGroups, texts.language().substr(0, 2), &GroupRow::language);
  bool const isWhole = number.find_first_not_of("0123456789") == std::string::npos;
  if (row == kGroups.end() || !isWhole || number.size() < row->leastDigits) return number;
  for (std::size_t at = number.size(); at > kGroup;) number.insert(at -= kGroup, row->separator);
  return number;
}

}  // namespace nimbara
