#include "app/settings/service_directory.h"

#include "support/paths.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace nimbara {
namespace {

std::filesystem::path const kTree = std::filesystem::path(test::kFixtures).parent_path().parent_path();

std::string contentOf(std::filesystem::path const& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// The table in docs/services.md as the rows of the services write it.
std::string servicesTable() {
  std::string table =
      "| service | host | asked for | terms | asked at most | credit | without it "
      "|\n|---|---|---|---|---|---|---|\n";
  for (ServiceRow const& row : kServices) {
    for (std::string_view const cell :
         {row.name, row.host, row.asksFor, row.terms, row.period, row.credit, row.without}) {
      table.append("| ").append(cell.empty() ? "none" : cell).append(" ");
    }
    table += "|\n";
  }
  return table;
}

/// NIMBARA_UPDATE_SNAPSHOTS=1 writes the table anew.
TEST(Services, AreListedInTheDocumentAsTheirRowsSay) {
  auto const file = kTree / "docs" / "services.md";
  std::string text = contentOf(file);
  auto const begin = text.find("| service |");
  auto const end = text.find("\n\n", begin) + 1;
  ASSERT_LT(begin, end);
  std::string const listed = text.substr(begin, end - begin);
  if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) {
    std::ofstream(file) << text.replace(begin, end - begin, servicesTable());
  }
  EXPECT_EQ(listed, servicesTable());
}

TEST(ServiceDirectory, AsksTheHostsOfTheRows) {
  ServiceDirectory const directory({}, "");
  ServiceDirectory const standIn({}, "http://127.0.0.1:1");
  for (ServiceRow const& row : kServices) {
    EXPECT_EQ(directory.address(row.service).baseUrl, row.host);
    std::string const below = row.sharesPaths ? "/" + std::string(row.name) : "";
    EXPECT_EQ(standIn.address(row.service).baseUrl, row.isOnThisMachine ? "" : "http://127.0.0.1:1" + below);
    if (row.host.empty()) continue;
    EXPECT_EQ(normalizedBase(row.host), row.host) << row.name;
    EXPECT_TRUE(row.host.starts_with("https://")) << row.name;
  }
}

TEST(ServiceDirectory, TellsTheUsersOwnAddresses) {
  Configuration configuration;
  configuration.services["feedServer"].host = "https://relay.example/";
  configuration.services["usgs"].host = "no address";
  configuration.services["openMeteo"] = {{}, "key"};
  ServiceDirectory const own(configuration, "");
  EXPECT_TRUE(own.isChosen(Service::feedServer));
  EXPECT_EQ(own.address(Service::feedServer).baseUrl, "https://relay.example");
  EXPECT_EQ(own.address(Service::openMeteo).apiKey, "key");
  EXPECT_EQ(own.address(Service::openMeteoGeocoding).apiKey, "");
  EXPECT_FALSE(own.isChosen(Service::usgs));
  EXPECT_FALSE(own.isChosen(Service::celestrak));
  EXPECT_TRUE(ServiceDirectory(configuration, "http://127.0.0.1:1").isChosen(Service::feedServer));
}

TEST(ServiceDirectory, TakesOnlyRealBaseAddresses) {
  EXPECT_EQ(normalizedBase(" http://localhost:80/x// "), "http://localhost:80/x");
  for (char const* const text :
       {"", "localhost:80", "ftp://x", "http://", "https:///", "http://a b", "http://a?b", "http://a#b"}) {
    EXPECT_EQ(normalizedBase(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace nimbara
