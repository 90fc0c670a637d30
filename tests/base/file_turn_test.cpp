#include "base/files/file_turn.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace nimbara {
namespace {

struct FileTurns : testing::Test {
  test::TemporaryFolder folder;
  std::filesystem::path file = folder.path() / "turn";
  std::stop_source stop;
};

TEST_F(FileTurns, OneHoldsItAndTheNextIsToldWhenItLetsGo) {
  auto first = std::make_unique<FileTurn>(file, "the first");
  FileTurn second(file, "2nd");
  EXPECT_TRUE(first->isHeld());
  EXPECT_FALSE(second.isHeld());
  EXPECT_EQ(second.holder(), "the first");
  std::jthread waiting([&] { second.wait(stop.get_token()); });
  first.reset();
  waiting.join();
  EXPECT_TRUE(second.isHeld());
  EXPECT_EQ(second.holder(), "2nd");
  EXPECT_EQ(FileTurn(file, "third").holder(), "2nd") << "nothing is left of the longer name";
}

TEST_F(FileTurns, OneAloneOfSeveralTakesOver) {
  auto first = std::make_unique<FileTurn>(file, "first");
  FileTurn second(file, "second");
  FileTurn third(file, "third");
  first.reset();
  second.wait(stop.get_token());
  EXPECT_TRUE(second.isHeld());
  third.wait(stop.get_token());
  EXPECT_FALSE(third.isHeld());
  EXPECT_EQ(third.holder(), "second");
}

TEST_F(FileTurns, AKilledHolderLetsGo) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t const child = fork();
  if (child == 0) {
    FileTurn const turn(file, "child");
    char const byte = turn.isHeld() ? '1' : '0';
    std::ignore = write(ready[1], &byte, 1);
    pause();
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  ASSERT_EQ(byte, '1');
  FileTurn turn(file, "parent");
  EXPECT_FALSE(turn.isHeld());
  kill(child, SIGKILL);
  turn.wait(stop.get_token());
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(turn.isHeld());
  close(ready[0]);
  close(ready[1]);
}

TEST_F(FileTurns, WaitingEndsWhenItIsStopped) {
  FileTurn const first(file, "first");
  FileTurn second(file, "second");
  stop.request_stop();
  second.wait(stop.get_token());
  EXPECT_FALSE(second.isHeld());
}

TEST_F(FileTurns, WithoutAFolderItIsEverybodysTurn) {
  FileTurn const turn(folder.path() / "missing" / "turn", "somebody");
  EXPECT_TRUE(turn.isHeld());
  EXPECT_EQ(turn.holder(), "somebody");
}

}  // namespace
}  // namespace nimbara
