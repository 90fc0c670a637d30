#include "demo/connection_threads.h"

#include "base/text/number.h"

#include <arpa/inet.h>
#include <filesystem>
#include <netinet/in.h>
#include <sys/socket.h>
#include <vector>

namespace nimbara {

namespace {

/// Never accepted by a loopback server in earnest; beyond it further connections wait.
constexpr std::size_t kMostThreads = 1000;

/// A socket of ours on that port; -1 for other descriptors.
bool isConnectionOf(int descriptor, int port) {
  sockaddr_in own{};
  socklen_t length = sizeof own;
  if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&own), &length) != 0) return false;
  return own.sin_family == AF_INET && ntohs(own.sin_port) == port;
}

}  // namespace

void ConnectionThreads::enqueue(std::function<void()> serve) {
  std::erase_if(threads_, [](Served const& served) { return served.done.load(); });
  if (threads_.size() >= kMostThreads) threads_.pop_front();  // waits for the oldest
  Served& served = threads_.emplace_back();
  served.thread = std::jthread([&served, serve = std::move(serve)] {
    serve();
    served.done = true;
  });
}

void shutDownConnections(int port) {
  std::vector<int> descriptors;
  std::error_code error;
  for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
    if (auto const descriptor = parseInteger(entry.path().filename().string()))
      descriptors.push_back(*descriptor);
  }
  for (int const descriptor : descriptors) {
    if (isConnectionOf(descriptor, port)) ::shutdown(descriptor, SHUT_RDWR);
  }
}

}  // namespace nimbara
