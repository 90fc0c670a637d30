#include "app/configuration.h"
#include "app/service_directory.h"
#include "base/number.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/feed_commands.h"
#include "demo/demo_process.h"

#include <cstring>
#include <signal.h>
#include <sys/wait.h>

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
                           "' is no address to listen on; write one like 127.0.0.1:8088");
  }
  return ListenAddress{address, *port};
}

int waitFor(pid_t child, std::stop_token const& stop) {
  std::stop_callback const pass(stop, [child] { kill(child, SIGTERM); });
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (stop.stop_requested()) return exitCode::kInterrupted;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? exitCode::kComplete : exitCode::kUnavailable;
}

}  // namespace

int runFeedServer(CommandLine const& line, Session const& session) {
  auto const listen = parseListen(line.feeds.listen);
  if (!listen) return session.fail(exitCode::kUsage, listen.error());
  Configuration const configuration = configurationOf(*session.settings);
  ServiceDirectory const services(configuration, line.common.services);
  std::string const folder = line.common.services.empty() ? "FeedServer" : "FeedServer.stand-in";
  std::string const program = (session.environment.program.parent_path() / "nimbara-feed-server").string();
  pid_t child = 0;
  int const error =
      spawn(child, program,
            {"nimbara-feed-server", listen->address, std::to_string(listen->port),
             services.address(Service::usgs).baseUrl, services.address(Service::celestrak).baseUrl,
             userAgent(configuration), (session.environment.cacheDirectory / folder).string()},
            environmentVariables());
  if (error != 0) {
    return session.fail(exitCode::kUnavailable,
                        "the feed server " + program + " cannot be started: " + std::strerror(error));
  }
  return waitFor(child, session.stop);
}

}  // namespace nimbara
