#include "base/files/file.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace nimbara {
namespace {

namespace fs = std::filesystem;

/// An empty folder of its own for each test.
class FileTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::path(testing::TempDir()) / "nimbara-file-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override {
    chmod(folder_.c_str(), 0700);
    fs::remove_all(folder_);
  }

  std::size_t entries(fs::path const& folder) const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
  }
  static unsigned modeOf(fs::path const& path) {
    struct stat about{};
    stat(path.c_str(), &about);
    return about.st_mode & 0777;
  }

  fs::path folder_;
};

TEST_F(FileTest, GivesBackWhatWasWritten) {
  std::string const binary("a\0b\r\n\xff", 6);
  for (std::string const& content : {std::string(), binary, std::string(300'000, 'x')}) {
    ASSERT_TRUE(writeFileAtomically(folder_ / "f", content));
    EXPECT_EQ(readFile(folder_ / "f", 300'000), content);
    EXPECT_EQ(entries(folder_), 1U);
  }
}

TEST_F(FileTest, MakesMissingFoldersForTheUserOnly) {
  fs::path const file = folder_ / "a" / "b" / "c.json";
  ASSERT_TRUE(writeFileAtomically(file, "x"));
  EXPECT_EQ(modeOf(file), 0600U);
  EXPECT_EQ(modeOf(folder_ / "a"), 0700U);
  EXPECT_EQ(modeOf(folder_ / "a" / "b"), 0700U);
  EXPECT_EQ(entries(folder_ / "a" / "b"), 1U);
}

TEST_F(FileTest, KeepsTheUsersRightsWhateverTheMask) {
  for (mode_t const mask : {0000U, 0077U, 0777U}) {
    mode_t const before = umask(mask);
    std::string const name = std::to_string(mask);
    EXPECT_TRUE(writeFileAtomically(folder_ / name / "a" / "file", "x"));
    umask(before);
    EXPECT_EQ(modeOf(folder_ / name), 0700U);
    EXPECT_EQ(modeOf(folder_ / name / "a"), 0700U);
    EXPECT_EQ(modeOf(folder_ / name / "a" / "file"), 0600U);
  }
}

TEST_F(FileTest, SweepsWhatAKilledWriterLeft) {
  for (char const* const name : {".f.json.Old123", ".f.json.New123", ".f.json.long-ago", ".g.json.Old123"})
    std::ofstream(folder_ / name) << "half";
  auto const longAgo = fs::file_time_type::clock::now() - std::chrono::hours(2);
  for (char const* const name : {".f.json.Old123", ".f.json.long-ago", ".g.json.Old123"})
    fs::last_write_time(folder_ / name, longAgo);
  ASSERT_TRUE(writeFileAtomically(folder_ / "f.json", "x"));
  EXPECT_FALSE(fs::exists(folder_ / ".f.json.Old123"));
  EXPECT_EQ(entries(folder_), 4U) << "another writer's, another file's and no writer's at all";
}

TEST_F(FileTest, ReadsNoMoreThanIsAllowed) {
  ASSERT_TRUE(writeFileAtomically(folder_ / "f", "12345"));
  EXPECT_EQ(readFile(folder_ / "f", 5), "12345");
  auto const tooLarge = readFile(folder_ / "f", 4);
  ASSERT_FALSE(tooLarge);
  EXPECT_EQ(tooLarge.error(), "the file " + (folder_ / "f").string() + " is too large");
}

TEST_F(FileTest, SaysWhatCannotBeRead) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  struct Row {
    fs::path path;
    std::string_view reason;
  };
  for (Row const& row :
       {Row{folder_ / "none", "No such file or directory"},
        Row{folder_ / "none" / "f", "No such file or directory"}, Row{folder_, "it is not a regular file"},
        Row{folder_ / "pipe", "it is not a regular file"}, Row{"/dev/zero", "it is not a regular file"}}) {
    auto const content = readFile(row.path, 100);
    ASSERT_FALSE(content) << row.path;
    EXPECT_EQ(content.error(),
              "the file " + row.path.string() + " cannot be read: " + std::string(row.reason));
  }
}

TEST_F(FileTest, LeavesNothingBehindWhereItCannotWrite) {
  ASSERT_TRUE(writeFileAtomically(folder_ / "file", "old"));
  fs::create_directories(folder_ / "taken" / "inside");
  for (fs::path const& path : {folder_ / "file" / "below", folder_ / "taken"}) {
    auto const written = writeFileAtomically(path, "new");
    ASSERT_FALSE(written) << path;
    EXPECT_TRUE(written.error().starts_with("the file " + path.string() + " cannot be written: "));
  }
  EXPECT_EQ(entries(folder_), 2U);
  EXPECT_EQ(readFile(folder_ / "file", 10), "old");
}

TEST_F(FileTest, RefusesAFolderThatMayNotBeWritten) {
  ASSERT_EQ(chmod(folder_.c_str(), 0555), 0);
  bool const isRoot = geteuid() == 0;  // to whom nothing is forbidden
  constexpr uid_t kNobody = 65534;
  ASSERT_EQ(isRoot ? seteuid(kNobody) : 0, 0);
  auto const written = writeFileAtomically(folder_ / "f", "x");
  ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);
  ASSERT_FALSE(written);
  EXPECT_NE(written.error().find("Permission denied"), std::string::npos);
  EXPECT_EQ(entries(folder_), 0U);
}

/// A full disk, played by a limit on the size of files.
TEST_F(FileTest, KeepsTheOldContentWhenTheDiskIsFull) {
  ASSERT_TRUE(writeFileAtomically(folder_ / "f", "old"));
  auto* const previous = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit const small{10'000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  auto const written = writeFileAtomically(folder_ / "f", std::string(20'000, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, previous);
  ASSERT_FALSE(written);
  EXPECT_NE(written.error().find("File too large"), std::string::npos);
  EXPECT_EQ(readFile(folder_ / "f", 100), "old");
  EXPECT_EQ(entries(folder_), 1U);
}

TEST_F(FileTest, ShowsReadersAWholeContentWhileSeveralWrite) {
  constexpr std::size_t kLength = 50'000;
  ASSERT_TRUE(writeFileAtomically(folder_ / "f", std::string(kLength, 'a')));
  {
    std::vector<std::jthread> writers;
    for (char const letter : {'b', 'c', 'd'}) {
      writers.emplace_back([this, letter] {
        for (int i = 0; i < 20; ++i) {
          EXPECT_TRUE(writeFileAtomically(folder_ / "f", std::string(kLength, letter)));
        }
      });
    }
    for (int i = 0; i < 100; ++i) {
      auto const content = readFile(folder_ / "f", kLength);
      ASSERT_TRUE(content) << content.error();
      EXPECT_EQ(*content, std::string(kLength, content->front()));
    }
  }
  EXPECT_EQ(entries(folder_), 1U);
}

}  // namespace
}  // namespace nimbara
