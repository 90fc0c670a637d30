#include "base/text/nearest_word.h"

#include <gtest/gtest.h>

#include <vector>

namespace nimbara {
namespace {

struct Typing {
  char const* one;
  char const* other;
  int distance;
};

TEST(TypingDistance, CountsLettersPutInLeftOutReplacedAndSwapped) {
  for (auto const& [one, other, distance] : std::to_array<Typing>({{"", "", 0},
                                                                   {"", "abc", 3},
                                                                   {"forecast", "forecast", 0},
                                                                   {"forcast", "forecast", 1},
                                                                   {"foreecast", "forecast", 1},
                                                                   {"farecast", "forecast", 1},
                                                                   {"froecast", "forecast", 1},
                                                                   {"frecsat", "forecast", 2},
                                                                   {"kp", "nws", 3}})) {
    EXPECT_EQ(typingDistance(one, other), distance) << one << " " << other;
    EXPECT_EQ(typingDistance(other, one), distance) << other << " " << one;
  }
}

struct Meant {
  char const* word;
  char const* candidate;
};

TEST(NearestWord, FindsWhatWasMeantOrNothing) {
  std::vector<std::string> const commands = {"forecast", "alerts", "line", "list", "satellites", "kp", "set"};
  for (auto const& [word, candidate] : std::to_array<Meant>({{"forcast", "forecast"},
                                                             {"frecsat", "forecast"},
                                                             {"frcsat", ""},
                                                             {"lst", "list"},
                                                             {"lit", "list"},
                                                             {"lis", "list"},
                                                             {"lise", ""},
                                                             {"sat", "satellites"},
                                                             {"sa", ""},
                                                             {"pk", "kp"},
                                                             {"k", ""},
                                                             {"", ""},
                                                             {"weather", ""}})) {
    EXPECT_EQ(nearestWord(word, commands), candidate) << word;
  }
}

TEST(NearestWord, LeavesOverlongWordsAlone) {
  std::vector<std::string> const candidates = {std::string(65, 'a'), std::string(64, 'b')};
  EXPECT_EQ(nearestWord(std::string(65, 'a'), candidates), "");
  EXPECT_EQ(nearestWord(std::string(64, 'b'), candidates), candidates[1]);
}

}  // namespace
}  // namespace nimbara
