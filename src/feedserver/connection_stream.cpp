#include "feedserver/connection_stream.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara {

namespace {

/// What stays unread would make the kernel take the answer back. Who goes on talking has had enough of us.
void takeWhatIsUnread(socket_t socket) {
  constexpr int kMost = 64;
  std::array<char, 4096> asked;
  for (int i = 0; i < kMost && recv(socket, asked.data(), asked.size(), MSG_DONTWAIT) > 0; ++i) {
  }
}

}  // namespace

bool ConnectionStream::isReady(short event, Moment until) const {
  auto const left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
  if (left.count() <= 0) return false;
  pollfd ready{socket_, event, 0};
  int result = 0;
  do {
    result = poll(&ready, 1, static_cast<int>(left.count()));
  } while (result < 0 && errno == EINTR);
  return result > 0 && (ready.revents & event) != 0;
}

bool ConnectionStream::waitForRequest(std::chrono::milliseconds idle) {
  return begin_ < end_ || isReady(POLLIN, std::chrono::steady_clock::now() + idle);
}

void ConnectionStream::beginRequest(std::chrono::milliseconds request, std::chrono::milliseconds answer) {
  readUntil_ = std::chrono::steady_clock::now() + request;
  writeUntil_ = readUntil_ + answer;
  left_ = requestBytes_;
}

bool ConnectionStream::fill() {
  if (!isReady(POLLIN, readUntil_)) return false;
  ssize_t const count = recv(socket_, buffer_.data(), buffer_.size(), 0);
  begin_ = 0;
  end_ = count > 0 ? static_cast<std::size_t>(count) : 0;
  return count > 0;
}

ssize_t ConnectionStream::read(char* out, std::size_t size) {
  if (left_ == 0 || (begin_ == end_ && !fill())) return -1;
  std::size_t const count = std::min({size, end_ - begin_, left_});
  std::copy_n(buffer_.data() + begin_, count, out);
  begin_ += count;
  left_ -= count;
  return static_cast<ssize_t>(count);
}

ssize_t ConnectionStream::write(char const* bytes, std::size_t size) {
  if (!is_writable()) return -1;
  return ::send(socket_, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void refuseConnection(socket_t socket, std::string_view answer) {
  takeWhatIsUnread(socket);
  static_cast<void>(::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL | MSG_DONTWAIT));
  closeConnection(socket);
}

void closeConnection(socket_t socket) {
  ::shutdown(socket, SHUT_WR);
  takeWhatIsUnread(socket);
  close(socket);
}

}  // namespace nimbara
