#include "app/settings/configuration.h"
#include "app/settings/service_directory.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "platform/linux/child_process.h"

#include <cstring>

namespace nimbara {

namespace {

struct ListenAddress {
  std::string address;
  int port = 0;
};

/// "127.0.0.1:8088", "[::1]:8088".
Result<ListenAddress, std::string> parseListen(std::string const& text) {
  auto const colon = text.rfind(':');
  auto const port = colon == std::string::npos ? std::nullopt : parseInteger(text.substr(colon + 1));
  std::string address = text.substr(0, colon == std::string::npos ? 0 : colon);
  if (address.starts_with('[') && address.ends_with(']')) address = address.substr(1, address.size() - 2);
  if (address.empty() || !port || *port < 0 || *port > 65535) {
    return std::unexpected("'" + oneLine(text) +
                           "' is not an address to listen on; use one like 127.0.0.1:8088");
  }
  return ListenAddress{address, *port};
}

}  // namespace

int runFeedServer(CommandLine const& line, Session const& session) {
  auto const listen = parseListen(line.feeds.listen);
  if (!listen) return session.fail(exitCode::kUsage, listen.error());
  if (session.environment.cacheDirectory.empty()) {
    return session.fail(exitCode::kUnavailable,
                        "no home directory for the feeds; set HOME or XDG_CACHE_HOME");
  }
  Configuration const configuration = configurationOf(*session.settings);
  ServiceDirectory const services(configuration, line.common.services);
  std::string const folder = line.common.services.empty() ? "FeedServer" : "FeedServer.stand-in";
  std::string const program = (session.environment.program.parent_path() / "nimbara-feed-server").string();
  // In this process's place: who ends it ends the server.
  int const error =
      become(program, {"nimbara-feed-server", listen->address, std::to_string(listen->port),
                       services.address(Service::usgs).baseUrl, services.address(Service::celestrak).baseUrl,
                       userAgent(configuration), (session.environment.cacheDirectory / folder).string()});
  return session.fail(exitCode::kUnavailable,
                      "the feed server " + program + " cannot be started: " + std::strerror(error));
}

}  // namespace nimbara
