#include "demo/demo_folder.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <optional>

namespace nimbara {
namespace {

namespace fs = std::filesystem;

void age(fs::path const& folder) {
  fs::last_write_time(folder, fs::file_time_type::clock::now() - std::chrono::minutes(2));
}

TEST(DemoFolder, GoesWithItsRunAndWithTheNextWhereThatWasKilled) {
  test::TemporaryFolder const parent;
  for (char const* const name : {"nimbara-demo-killed", "nimbara-demo-begun", "nimbara-other"})
    fs::create_directory(parent.path() / name);
  fs::create_directory(parent.path() / "nimbara-demo-killed" / "cache");
  for (char const* const name : {"nimbara-demo-killed", "nimbara-other"}) age(parent.path() / name);
  std::optional<DemoFolder> running(parent.path());
  fs::path const kept = running->path();
  EXPECT_FALSE(fs::exists(parent.path() / "nimbara-demo-killed"));
  EXPECT_TRUE(fs::exists(parent.path() / "nimbara-demo-begun")) << "its run may not have locked it yet";
  EXPECT_TRUE(fs::exists(parent.path() / "nimbara-other"));
  age(kept);
  DemoFolder const second(parent.path());
  EXPECT_TRUE(fs::exists(kept)) << "it is in use, however old it is";
  EXPECT_NE(second.path(), kept);
  running.reset();
  EXPECT_FALSE(fs::exists(kept));
}

}  // namespace
}  // namespace nimbara
