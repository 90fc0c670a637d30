#include "demo/demo_server.h"
#include "support/session/demo_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::CliRun;
using testing::HasSubstr;
using testing::Not;

struct SceneRow {
  char const* scene;
  char const* state;  ///< of the first source
  std::size_t count;
  std::vector<char const*> listed;
  std::vector<char const*> absent;
};

void PrintTo(SceneRow const& row, std::ostream* out) {
  *out << row.scene;
}

struct ScenesPlayed : test::DemoSession, testing::WithParamInterface<SceneRow> {};

TEST_P(ScenesPlayed, ComeOutAsTheySay) {
  SceneRow const& row = GetParam();
  DemoScene const* const scene = findDemoScene(row.scene);
  ASSERT_NE(scene, nullptr);
  server = *DemoServer::start(clock, {}, 0, scene);
  base = server->baseUrl();
  CliRun const played =
      run({"alerts", std::string(scene->place), "--source", "nws,meteoalarm", "--json", "--coverage"});
  EXPECT_THAT(played.out, HasSubstr("\"state\":\"" + std::string(row.state) +
                                    "\",\"count\":" + std::to_string(row.count)));
  for (char const* const text : row.listed) EXPECT_THAT(played.out, HasSubstr(text));
  for (char const* const text : row.absent) EXPECT_THAT(played.out, Not(HasSubstr(text)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScenesPlayed,
    testing::Values(
        SceneRow{"coast", "warnings", 2, {"Uusimaa", "Western Gulf of Finland"}, {"Ahvenanmaa"}},
        SceneRow{"border", "warnings", 1, {"Rain Warning"}, {"Wind Warning"}},
        SceneRow{"names", "warnings", 1, {"Wind Warning"}, {"Rain Warning"}},
        SceneRow{
            "no-outlines", "unplaced", 2, {R"("alerts":[])", "Velebit Channel North", "Outer Islands"}, {}},
        SceneRow{"consecutive",
                 "warnings",
                 1,
                 {R"("onset":"2026-11-21T06:00:00Z")", R"("expires":"2026-11-21T20:00:00Z")"},
                 {}},
        SceneRow{"near",
                 "warnings",
                 1,
                 {R"("severity":"advisory")", R"("expires":"2026-11-21T15:00:00Z")"},
                 {R"("severity":"critical","title")"}},
        SceneRow{"moved", "warnings", 1, {R"("onset":"2026-11-21T09:00:00Z")"}, {}},
        SceneRow{"cancelled", "warnings", 1, {"Rain Warning"}, {}},
        SceneRow{"bilingual", "warnings", 1, {R"("message":"Brabant)"}, {"2 areas"}},
        SceneRow{"calm", "none", 0, {}, {}}, SceneRow{"rubbish", "unchecked", 0, {}, {}},
        SceneRow{"missing", "unchecked", 0, {}, {}},
        SceneRow{"second-feed",
                 "warnings",
                 1,
                 {"Wind Warning", R"("_nimbaraText":"Orange Wind warning for Stadt Berlin.")",
                  R"("_nimbaraFullText":true)"},
                 {"Rain Warning"}},
        SceneRow{"uncovered", "uncovered", 0, {R"("country":"TD")"}, {}},
        SceneRow{"unknown-level", "warnings", 2, {"Air Quality Alert", "Frost Advisory"}, {}},
        SceneRow{"reissued", "warnings", 1, {"now until tomorrow"}, {}}),
    [](auto const& row) {
      std::string name = row.param.scene;
      std::ranges::replace(name, '-', '_');
      return name;
    });

}  // namespace
}  // namespace nimbara
