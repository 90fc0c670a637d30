// nimbara-feed-server ADDRESS PORT USGS CELESTRAK USER-AGENT FOLDER: the feed server as a process, which
// `nimbara feed-server` becomes. Prints its address and serves until it is told to end.

#include "base/text/number.h"
#include "feedserver/feed_http_server.h"
#include "platform/linux/http/curl_http_client.h"

#include <csignal>
#include <cstdio>

namespace {

/// As of every command of nimbara that was ended.
constexpr int kInterrupted = 130;

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (int const signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  return signals;
}

void logLine(std::string_view text) {
  std::fprintf(stderr, "nimbara: %.*s\n", static_cast<int>(text.size()), text.data());
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 7) {
    std::fputs("nimbara-feed-server: started by nimbara feed-server; see nimbara feed-server --help\n",
               stderr);
    return 2;
  }
  std::signal(SIGXFSZ, SIG_IGN);  // a limit of file sizes is an error of writing like others
  sigset_t const signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  nimbara::CurlHttpClient http({arguments[5], {}});
  nimbara::SystemClock const clock;
  nimbara::FeedKeeper keeper(http, clock, {arguments[3], arguments[4], arguments[6], logLine});
  auto const server = nimbara::FeedHttpServer::start(keeper, clock, arguments[1],
                                                     nimbara::parseInteger(arguments[2]).value_or(0), {});
  if (!server) {
    logLine(server.error());
    return 1;
  }
  std::printf("http://%s:%d\n", arguments[1], (*server)->port());
  std::fflush(stdout);
  int signal = 0;
  sigwait(&signals, &signal);
  return kInterrupted;
}
