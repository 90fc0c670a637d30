// One connection as the HTTP library reads and writes it, with limits of time and size for each request, so
// that slow and babbling peers cost no more than a thread for a while.
#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <poll.h>
#include <string_view>

namespace nimbara {

class ConnectionStream final : public httplib::Stream {
 public:
  ConnectionStream(socket_t socket, std::size_t requestBytes)
      : socket_(socket), requestBytes_(requestBytes) {}

  /// False when the peer says nothing for so long or has gone.
  bool waitForRequest(std::chrono::milliseconds idle);
  /// From now on so long for the whole request, and then so long for its answer.
  void beginRequest(std::chrono::milliseconds request, std::chrono::milliseconds answer);

  bool is_readable() const override { return begin_ < end_ || isReady(POLLIN, readUntil_); }
  bool is_writable() const override { return isReady(POLLOUT, writeUntil_); }
  ssize_t read(char* out, std::size_t size) override;
  ssize_t write(char const* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string&, int&) const override {}
  void get_local_ip_and_port(std::string&, int&) const override {}
  socket_t socket() const override { return socket_; }

 private:
  using Moment = std::chrono::steady_clock::time_point;
  bool isReady(short event, Moment until) const;
  bool fill();

  socket_t socket_;
  std::size_t requestBytes_;
  std::size_t left_ = 0;  ///< bytes that this request may still have
  Moment readUntil_;
  Moment writeUntil_;
  std::array<char, 4096> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

/// Says `answer` without waiting for anything, and closes.
void refuseConnection(socket_t socket, std::string_view answer);
void closeConnection(socket_t socket);

}  // namespace nimbara
