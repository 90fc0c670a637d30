#include "platform/linux/dbus/bus_address.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace nimbara {

namespace {

constexpr std::string_view kUnix = "unix:";

std::string variable(char const* name) {
  char const* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::optional<std::string> unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      out += text[i];
      continue;
    }
    unsigned char byte = 0;
    std::string_view const digits = text.substr(i + 1, 2);
    auto const end = digits.data() + digits.size();
    if (digits.size() != 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end) return std::nullopt;
    out += static_cast<char>(byte);
    i += 2;
  }
  return out;
}

/// The value of a key in "path=/run/bus,guid=…".
std::optional<std::string> valueOf(std::string_view pairs, std::string_view key) {
  while (!pairs.empty()) {
    std::string_view const pair = pairs.substr(0, pairs.find(','));
    pairs.remove_prefix(std::min(pairs.size(), pair.size() + 1));
    if (pair.starts_with(key) && pair.substr(key.size()).starts_with('=')) {
      return unescaped(pair.substr(key.size() + 1));
    }
  }
  return std::nullopt;
}

struct SocketAddress {
  sockaddr_un address{};
  socklen_t size = 0;
};

/// Nothing for an address of another kind.
std::optional<SocketAddress> socketOf(std::string_view text) {
  if (!text.starts_with(kUnix)) return std::nullopt;
  text.remove_prefix(kUnix.size());
  auto const path = valueOf(text, "path");
  auto const abstract = valueOf(text, "abstract");
  if (!path && !abstract) return std::nullopt;
  std::string const name = path ? *path : std::string(1, '\0') + *abstract;
  SocketAddress found;
  if (name.size() >= sizeof found.address.sun_path) return std::nullopt;
  found.address.sun_family = AF_UNIX;
  std::memcpy(found.address.sun_path, name.data(), name.size());
  found.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + (path ? 1 : 0));
  return found;
}

class Socket {
 public:
  Socket() : descriptor_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {}
  ~Socket() { close(descriptor_); }
  Socket(Socket const&) = delete;
  Socket& operator=(Socket const&) = delete;

  /// Connects and says the first line of every bus's conversation; anything that comes back is an answer.
  bool hearsFrom(SocketAddress const& where, std::chrono::steady_clock::time_point deadline) const {
    auto const* const address = reinterpret_cast<sockaddr const*>(&where.address);
    constexpr std::string_view kGreeting("\0AUTH\r\n", 7);
    if (connect(descriptor_, address, where.size) != 0) return false;
    if (send(descriptor_, kGreeting.data(), kGreeting.size(), MSG_NOSIGNAL) < 0) return false;
    return hasInput(deadline);
  }

 private:
  bool hasInput(std::chrono::steady_clock::time_point deadline) const {
    while (true) {
      auto const left =
          std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) return false;
      pollfd file{descriptor_, POLLIN, 0};
      if (poll(&file, 1, static_cast<int>(left.count())) > 0) break;
    }
    char letter = 0;
    return recv(descriptor_, &letter, 1, 0) == 1;
  }

  int descriptor_;
};

}  // namespace

std::string systemBusAddress() {
  std::string const chosen = variable("DBUS_SYSTEM_BUS_ADDRESS");
  return chosen.empty() ? "unix:path=/var/run/dbus/system_bus_socket" : chosen;
}

std::string sessionBusAddress() {
  std::string const chosen = variable("DBUS_SESSION_BUS_ADDRESS");
  return chosen.empty() ? "unix:path=" + variable("XDG_RUNTIME_DIR") + "/bus" : chosen;
}

bool answersAt(std::string const& addresses, std::chrono::milliseconds limit) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  std::string_view rest = addresses;
  while (!rest.empty()) {
    std::string_view const one = rest.substr(0, rest.find(';'));
    rest.remove_prefix(std::min(rest.size(), one.size() + 1));
    auto const where = socketOf(one);
    if (!where || Socket().hearsFrom(*where, deadline)) return true;
  }
  return false;
}

}  // namespace nimbara
