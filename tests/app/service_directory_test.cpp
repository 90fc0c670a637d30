#include "app/settings/service_directory.h"

#include "base/text/text.h"
#include "support/paths.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace nimbara {
namespace {

std::filesystem::path const kTree = std::filesystem::path(test::kFixtures).parent_path().parent_path();

std::string contentOf(std::filesystem::path const& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// The rows of the table of services by their first cell.
std::map<std::string, std::vector<std::string>> listedServices() {
  std::map<std::string, std::vector<std::string>> rows;
  std::string const text = contentOf(kTree / "docs" / "services.md");
  for (std::string_view const line : split(text, '\n')) {
    if (!line.starts_with("| ") || line.starts_with("| service")) continue;
    std::vector<std::string> cells;
    for (std::string_view const cell : split(line.substr(1, line.size() - 2), '|'))
      cells.emplace_back(trimmed(cell));
    rows[cells.front()] = cells;
  }
  return rows;
}

TEST(ServiceDirectory, AsksTheHostsOfTheListAndNoOthers) {
  auto const rows = listedServices();
  EXPECT_EQ(rows.size(), enumNames<Service>.size());
  ServiceDirectory const directory({}, "");
  for (std::size_t i = 0; i < enumNames<Service>.size(); ++i) {
    auto const service = static_cast<Service>(i);
    std::string const name(enumName(service));
    ASSERT_TRUE(rows.contains(name)) << name << " is not in docs/services.md";
    auto const& cells = rows.at(name);
    EXPECT_EQ(cells.size(), 7U) << name;
    EXPECT_THAT(cells, testing::Each(testing::Not(testing::IsEmpty()))) << name;
    std::string const host(defaultHost(service));
    EXPECT_EQ(host.empty() ? "none" : host, cells[1]) << name;
    EXPECT_EQ(directory.address(service).baseUrl, host);
    if (!host.empty()) {
      EXPECT_EQ(normalizedBase(host), host) << name;
      EXPECT_TRUE(host.starts_with("https://")) << name;
    }
  }
}

/// Names that are reserved for documents lead nowhere, so nothing but the stand-ins may be called by them.
TEST(ServiceDirectory, NothingInTheProgramNamesAHostThatCannotExist) {
  for (auto const& entry : std::filesystem::recursive_directory_iterator(kTree / "src")) {
    std::string const file = entry.path().string();
    bool const isCode = file.ends_with(".cpp") || file.ends_with(".h") || file.ends_with(".qml");
    if (!isCode || file.find("/src/demo/") != std::string::npos) continue;
    std::string const text = contentOf(entry.path());
    for (char const* const ending : {".example\"", ".example/", ".invalid\""}) {
      EXPECT_EQ(text.find(ending), std::string::npos) << file << " " << ending;
    }
  }
}

TEST(ServiceDirectory, TellsTheUsersOwnAddresses) {
  Configuration configuration;
  configuration.services["feedServer"].host = "https://relay.example/";
  configuration.services["usgs"].host = "no address";
  ServiceDirectory const own(configuration, "");
  EXPECT_TRUE(own.isChosen(Service::feedServer));
  EXPECT_EQ(own.address(Service::feedServer).baseUrl, "https://relay.example");
  EXPECT_FALSE(own.isChosen(Service::usgs));
  EXPECT_FALSE(own.isChosen(Service::celestrak));
  EXPECT_TRUE(ServiceDirectory(configuration, "http://127.0.0.1:1").isChosen(Service::feedServer));
}

}  // namespace
}  // namespace nimbara
