#include "platform/linux/network/lazy_http_client.h"

#include "support/paths.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

std::string refusalBeside(std::filesystem::path const& program) {
  LazyHttpClient client(program, "test");
  HttpRequest request;
  request.url = "http://127.0.0.1:9/";
  auto const answer = client.get(request);
  return answer ? "answered" : answer.error().message;
}

TEST(LazyHttpClient, SaysThatItsComponentIsMissing) {
  test::TemporaryFolder const empty;
  EXPECT_EQ(refusalBeside(empty.path() / "nimbara"),
            "the network component (nimbara-http.so) is not installed");
}

/// As an update leaves it beside a program that is still running.
TEST(LazyHttpClient, UsesNoComponentOfAnotherBuild) {
  EXPECT_EQ(refusalBeside(std::filesystem::path(test::kForeignModules) / "nimbara"),
            "the network component (nimbara-http.so) is of another version; restart Nimbara");
}

}  // namespace
}  // namespace nimbara
