// A server on 127.0.0.1 that says exactly the bytes that a test wants said, so that a client meets every kind
// of bad peer. One thread, one connection at a time; it ends when it is destroyed, whatever its clients do.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace nimbara::test {

/// One accepted connection, as a handler sees it.
class Connection {
 public:
  Connection(int socket, int ending, void* tls) : socket_(socket), ending_(ending), tls_(tls) {}

  /// The next request up to its blank line; empty when the client has gone or the server ends.
  std::string readRequest();
  void write(std::string_view bytes);
  /// Returns when the client goes away or the server ends.
  void waitForEnd();

 private:
  bool waitReadable() const;

  int socket_;
  int ending_;
  void* tls_;
};

class LoopbackServer {
 public:
  using Handler = std::function<void(Connection&)>;

  /// `handler` is called once a connection and owns it until it returns, which closes it.
  explicit LoopbackServer(Handler handler, bool tls = false);
  /// Answers every request with `answer` and keeps the connection open.
  static Handler always(std::string answer);

  ~LoopbackServer();
  LoopbackServer(LoopbackServer const&) = delete;
  LoopbackServer& operator=(LoopbackServer const&) = delete;

  int port() const { return port_; }
  std::string url(std::string_view path = "/") const;
  int connections() const;
  /// The server's own certificate in PEM form (TLS only).
  std::string const& certificate() const { return certificate_; }

 private:
  struct Tls;

  void listen();
  void serve();

  Handler handler_;
  std::unique_ptr<Tls> tls_;
  std::string certificate_;
  int listener_ = -1;
  int ending_ = -1;
  int port_ = 0;
  mutable std::mutex mutex_;
  int connections_ = 0;
  std::jthread thread_;
};

/// "HTTP/1.1 200 OK" with a length and `headers` ("X: y\r\n" each).
std::string httpAnswer(std::string_view body, std::string_view headers = "",
                       std::string_view status = "200 OK");

}  // namespace nimbara::test
