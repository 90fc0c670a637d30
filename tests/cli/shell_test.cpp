#include "cli/command_line.h"
#include "cli/shell/completion.h"
#include "cli/shell/manual.h"

namespace nimbara {
namespace {

using testing::HasSubstr;

std::vector<Completion> known(std::string_view name, std::string_view before, std::string_view) {
  if (name == "PLACE") return {{"My hut", "Spain"}, {"Mykonos", ""}, {"Oslo", ""}};
  if (name == "VALUE" && before == "language") return {{"de", ""}, {"en", ""}};
  if (name == "--lang") return {{"de", ""}, {"fr", ""}};
  return {};
}

struct CompletionRow {
  char const* name;
  std::vector<std::string> words;
  std::vector<std::string> offered;
};

void PrintTo(CompletionRow const& row, std::ostream* out) {
  *out << row.name;
}

class Completions : public testing::TestWithParam<CompletionRow> {};

TEST_P(Completions, AreWhatMayStandThere) {
  std::vector<std::string> offered;
  for (Completion const& completion : completions(commandOutline(), GetParam().words, known)) {
    offered.push_back(completion.word);
  }
  EXPECT_EQ(offered, GetParam().offered);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Completions,
    testing::Values(CompletionRow{"Command", {"forec"}, {"forecast"}},
                    CompletionRow{"InnerCommand", {"places", "ren"}, {"rename"}},
                    CompletionRow{"Option", {"forecast", "--prov"}, {"--provider"}},
                    CompletionRow{"SavedPlace", {"forecast", "My"}, {"My hut", "Mykonos"}},
                    CompletionRow{"PlaceAsTheShellHasIt", {"forecast", "My\\ h"}, {"My hut"}},
                    CompletionRow{"OpenQuotation", {"forecast", "\"My h"}, {"My hut"}},
                    CompletionRow{"NoSecondPlace", {"forecast", "Oslo", ""}, {}},
                    CompletionRow{"ValueOfAnOption", {"--lang", "d"}, {"de"}},
                    CompletionRow{"ValueBehindAnEqualsSign", {"forecast", "--lang=d"}, {"--lang=de"}},
                    CompletionRow{"EqualsSignAsAWord", {"forecast", "--lang", "=", "f"}, {"fr"}},
                    CompletionRow{"NothingButTheEqualsSign", {"forecast", "--lang", "="}, {"de", "fr"}},
                    CompletionRow{
                        "PlaceBehindAnOptionWithItsValue", {"forecast", "--lang", "de", "Os"}, {"Oslo"}},
                    CompletionRow{"ValueOfASetting", {"settings", "set", "language", ""}, {"de", "en"}},
                    CompletionRow{"ValueOfAnotherSetting", {"settings", "set", "units", ""}, {}},
                    CompletionRow{"CommandInTheDemo", {"demo", "--", "nimbara", "foreca"}, {"forecast"}},
                    CompletionRow{"UnknownOption", {"forecast", "--nothing=x"}, {}},
                    CompletionRow{"NotForPeople", {"manua"}, {}}),
    [](auto const& info) { return std::string(info.param.name); });

TEST(Manual, HasAPageForEachCommandAndSectionsForThoseBelow) {
  auto const pages = manualPages(commandOutline(), "1.2");
  ASSERT_EQ(pages.size(), commandOutline().commands.size() + 1);
  EXPECT_EQ(pages[0].file, "nimbara.1");
  EXPECT_THAT(pages[0].text, HasSubstr("\\fBnimbara\\-forecast\\fR(1)"));
  auto const places = std::ranges::find(pages, "nimbara-places.1", &ManualPage::file);
  ASSERT_NE(places, pages.end());
  EXPECT_THAT(places->text, HasSubstr(".SS nimbara places rename\n"));
  EXPECT_THAT(places->text, HasSubstr("\\fB\\-\\-json\\fR\n"));
}

TEST(Manual, LetsNoTextBeARequest) {
  CommandOutline const program{
      .name = "p",
      .explanation = ".so /etc/passwd \\n(.g",
      .options = {{.name = "--a", .shortName = "", .value = "", .explanation = "'x", .words = {}}},
      .commands = {}};
  std::string const text = manualPages(program, "1")[0].text;
  EXPECT_THAT(text, HasSubstr("\n\\&.so /etc/passwd \\en(.g"));
  EXPECT_THAT(text, HasSubstr("\n\\&'x"));
}

}  // namespace
}  // namespace nimbara
