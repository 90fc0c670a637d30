#include "platform/linux/network/consent_listener.h"

#include "base/text/clean_text.h"
#include "base/text/text.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLook{100};
constexpr milliseconds kSlowest{1000};
constexpr std::size_t kLongest = 16 << 10;

std::string percentDecoded(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    auto const* const digits = text.data() + i + 1;
    bool const isCoded = text[i] == '%' && i + 2 < text.size() &&
                         std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2;
    out += isCoded ? static_cast<char>(value) : text[i] == '+' ? ' ' : text[i];
    if (isCoded) i += 2;
  }
  return out;
}

std::optional<std::string> parameter(std::string_view query, std::string_view name) {
  for (std::string_view const part : split(query, '&')) {
    if (part.starts_with(name) && part.substr(name.size()).starts_with('='))
      return percentDecoded(part.substr(name.size() + 1));
  }
  return std::nullopt;
}

/// Up to the end of the headers; what came until then where that is late.
std::string requestOf(int connection, std::stop_token const& stop) {
  std::string request;
  auto const end = steady_clock::now() + kSlowest;
  while (steady_clock::now() < end && !stop.stop_requested() && request.size() < kLongest &&
         !request.contains("\r\n\r\n")) {
    pollfd file{connection, POLLIN, 0};
    if (poll(&file, 1, static_cast<int>(kLook.count())) <= 0) continue;
    char buffer[4096];
    ssize_t const count = recv(connection, buffer, sizeof buffer, 0);
    if (count <= 0) break;
    request.append(buffer, static_cast<std::size_t>(count));
  }
  return request;
}

void answer(int connection, std::string_view status, std::string_view sentence) {
  std::string const page =
      "<!doctype html><meta charset=utf-8><title>Nimbara</title>"
      "<body style=\"font:1.2em sans-serif;margin:4em\"><p>" +
      markupEscaped(sentence);
  std::string const whole = "HTTP/1.1 " + std::string(status) +
                            "\r\nContent-Type: text/html; charset=utf-8\r\nCache-Control: no-store"
                            "\r\nReferrer-Policy: no-referrer\r\nConnection: close\r\nContent-Length: " +
                            std::to_string(page.size()) + "\r\n\r\n" + page;
  // A page fits into what the system buffers; a browser that has gone needs none.
  std::ignore = send(connection, whole.data(), whole.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  shutdown(connection, SHUT_WR);
}

}  // namespace

ConsentReturn consentReturn(std::string_view request, std::string_view path, std::string_view state) {
  using Kind = ConsentReturn::Kind;
  std::string_view const line = request.substr(0, request.find("\r\n"));
  constexpr std::string_view kMethod = "GET ";
  if (!line.starts_with(kMethod)) return {};
  std::string_view const target = line.substr(kMethod.size(), line.rfind(' ') - kMethod.size());
  auto const question = target.find('?');
  if (question == std::string_view::npos || target.substr(0, question) != path) return {};
  std::string_view const query = target.substr(question + 1);
  if (state.empty() || parameter(query, "state") != state) return {};
  if (auto const error = parameter(query, "error")) return {Kind::denied, oneLine(*error)};
  auto code = parameter(query, "code");
  if (!code || code->empty()) return {};
  return {Kind::code, std::move(*code)};
}

Result<ConsentListener, std::string> ConsentListener::open(std::uint16_t port) {
  int const descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return std::unexpected(std::string(std::strerror(errno)));
  ConsentListener listener(descriptor);
  int const yes = 1;
  setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  constexpr int kWaiting = 8;
  bool const isOpen = bind(descriptor, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0 &&
                      listen(descriptor, kWaiting) == 0;
  if (!isOpen) return std::unexpected(std::string(std::strerror(errno)));
  return listener;
}

ConsentListener::ConsentListener(ConsentListener&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

ConsentListener::~ConsentListener() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::uint16_t ConsentListener::port() const {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(descriptor_, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

Result<std::string, ConsentFailure> ConsentListener::wait(std::string_view path, std::string_view state,
                                                          std::string_view done, std::string_view failed,
                                                          milliseconds limit,
                                                          std::stop_token const& stop) const {
  auto const end = steady_clock::now() + limit;
  while (steady_clock::now() < end && !stop.stop_requested()) {
    pollfd file{descriptor_, POLLIN, 0};
    if (poll(&file, 1, static_cast<int>(kLook.count())) <= 0) continue;
    int const connection = accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) continue;
    ConsentReturn came = consentReturn(requestOf(connection, stop), path, state);
    using Kind = ConsentReturn::Kind;
    answer(connection, came.kind == Kind::code ? "200 OK" : "400 Bad Request",
           came.kind == Kind::code ? done : failed);
    close(connection);
    if (came.kind == Kind::code) return std::move(came.value);
    if (came.kind == Kind::denied)
      return std::unexpected(ConsentFailure{ConsentFailure::Kind::denied, std::move(came.value)});
  }
  using Why = ConsentFailure::Kind;
  return std::unexpected(ConsentFailure{stop.stop_requested() ? Why::stopped : Why::late});
}

}  // namespace nimbara
