// A bus that takes connections and never says a word.
#pragma once

#include "support/temporary_folder.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace nimbara::test {

class SilentBus {
 public:
  SilentBus() : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string const path = (folder_.path() / "bus").string();
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    auto const* const general = reinterpret_cast<sockaddr const*>(&address);
    if (bind(socket_, general, sizeof address) != 0 || listen(socket_, 16) != 0) {
      throw std::runtime_error("no socket");
    }
  }
  ~SilentBus() { close(socket_); }
  SilentBus(SilentBus const&) = delete;
  SilentBus& operator=(SilentBus const&) = delete;

  std::string address() const { return "unix:path=" + (folder_.path() / "bus").string(); }

 private:
  TemporaryFolder folder_;
  int socket_;
};

}  // namespace nimbara::test
