#include "cli/slow_note.h"

#include "support/test_console.h"

namespace nimbara {
namespace {

std::string saidWithin(std::chrono::milliseconds patience, bool isWatched) {
  Environment const environment = test::plainEnvironment();
  test::TestConsole console;
  console.isWatched = isWatched;
  Session session{environment, console, {}};
  session.patience = patience;
  {
    SlowNote const note(session, "working …");
  }
  return console.errors;
}

TEST(SlowNote, IsForThosePatienceEndsBeforeTheWork) {
  EXPECT_EQ(saidWithin(std::chrono::milliseconds(0), true), "nimbara: working …\n");
  EXPECT_EQ(saidWithin(std::chrono::hours(1), true), "") << "and nobody waits for the hour";
  EXPECT_EQ(saidWithin(std::chrono::milliseconds(0), false), "") << "nobody watches";
}

}  // namespace
}  // namespace nimbara
