#include "feedserver/feed_http_server.h"

#include "feedserver/connection_stream.h"
#include "feedserver/feed_answer.h"

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <set>
#include <thread>

namespace nimbara {

namespace {

constexpr std::string_view kBusy =
    "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 5\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";

/// As the library tells readers; there is no limit.
constexpr std::size_t kRequestsAConnection = 1'000'000;

/// Set while the accepting thread itself runs the task of a connection that is one too many.
thread_local bool isOneTooMany = false;
/// Set by an answer after which the connection cannot go on: an unread body may follow.
thread_local bool closesConnection = false;

class LimitedThreads final : public httplib::TaskQueue {
 public:
  explicit LimitedThreads(int most) : most_(most) {}

  void enqueue(std::function<void()> serve) override {
    {
      std::lock_guard const lock(mutex_);
      isOneTooMany = running_ >= most_;
      if (!isOneTooMany) ++running_;
    }
    if (isOneTooMany) return serve();
    std::thread([this, serve = std::move(serve)] {
      serve();
      std::lock_guard const lock(mutex_);
      if (--running_ == 0) ended_.notify_all();
    }).detach();
  }
  /// Waits for all of them.
  void shutdown() override {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return running_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  int running_ = 0;
  int most_;
};

FeedRequest feedRequest(httplib::Request const& request) {
  return {request.method,
          request.path,
          {request.params.begin(), request.params.end()},
          request.get_header_value("Accept-Encoding"),
          request.get_header_value("If-None-Match"),
          request.get_header_value("If-Modified-Since")};
}

/// Not even a length: the library's 0 could be taken over into what a cache has, and after that of the body
/// some readers wait for one.
void sendNothing(httplib::Response& response) {
  response.set_content_provider("text/plain", [](std::size_t, httplib::DataSink& sink) {
    sink.done();
    return true;
  });
  response.headers.erase("Content-Type");
}

void send(FeedAnswer const& answer, httplib::Response& response) {
  response.status = answer.status;
  for (auto const& [name, value] : answer.headers) response.set_header(name, value);
  if (answer.status == 304) return sendNothing(response);
  if (!answer.feed) return response.set_content(answer.text, answer.contentType);
  // As a provider, lest the library copy or compress it again for every reader.
  std::string const& body = answer.body();
  if (body.empty()) return response.set_content("", answer.contentType);
  response.set_content_provider(
      body.size(), answer.contentType,
      [feed = answer.feed, &body](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
        return sink.write(body.data() + offset, std::min(length, body.size() - offset));
      });
}

}  // namespace

struct FeedHttpServer::Running final : httplib::Server {
  Running(FeedKeeper& keeperToUse, Clock const& clockToUse, Limits limitsToKeep)
      : keeper(keeperToUse), clock(clockToUse), limits(limitsToKeep) {
    new_task_queue = [most = limits.connections] { return new LimitedThreads(most); };
    set_tcp_nodelay(true);
    set_keep_alive_max_count(kRequestsAConnection);
    set_payload_max_length(limits.requestBytes);
    set_default_headers({{"Server", "nimbara-feed-server"}});
    set_socket_options([this](socket_t socket) {
      int const yes = 1;
      setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
      listening = socket;
    });
    // What is refused before it has come here is no request; what follows it is none either.
    set_error_handler(HandlerWithResponse([](httplib::Request const&, httplib::Response& response) {
      if (response.status < 500) closesConnection = true;
      return HandlerResponse::Unhandled;
    }));
    set_pre_routing_handler([this](httplib::Request const& request, httplib::Response& response) {
      serve(request, response);
      return HandlerResponse::Handled;
    });
  }

  void serve(httplib::Request const& request, httplib::Response& response) {
    FeedRequest const asked = feedRequest(request);
    auto const key = understand(asked);
    closesConnection = !key;
    send(key ? answerWith(keeper.get(*key), asked, clock.now()) : key.error(), response);
  }

  bool process_and_close_socket(socket_t socket) override {
    if (isOneTooMany) {
      refuseConnection(socket, kBusy);
      return false;
    }
    {
      std::lock_guard const lock(mutex);
      open.insert(socket);
      if (stopping) ::shutdown(socket, SHUT_RDWR);
    }
    serveRequests(socket);
    {
      // Not closed before it is forgotten: its number may be another's at once.
      std::lock_guard const lock(mutex);
      open.erase(socket);
    }
    closeConnection(socket);
    return true;
  }

  void serveRequests(socket_t socket) {
    ConnectionStream stream(socket, limits.requestBytes);
    bool isOpen = true;
    while (isOpen && !stopping && stream.waitForRequest(limits.idle)) {
      stream.beginRequest(limits.request, limits.answer);
      closesConnection = false;
      bool isClosed = false;
      // Ranges of a body that changes every minute are of no use to anybody.
      isOpen = process_request(stream, false, isClosed,
                               [](httplib::Request& request) { request.ranges.clear(); }) &&
               !isClosed && !closesConnection;
    }
  }

  void stopAll() {
    {
      std::lock_guard const lock(mutex);
      stopping = true;
      for (socket_t const socket : open) ::shutdown(socket, SHUT_RDWR);
    }
    stop();
  }

  FeedKeeper& keeper;
  Clock const& clock;
  Limits limits;
  int port = 0;
  socket_t listening = INVALID_SOCKET;
  std::mutex mutex;
  std::set<socket_t> open;
  std::atomic<bool> stopping = false;
  std::jthread thread;
};

FeedHttpServer::FeedHttpServer(std::unique_ptr<Running> running) : running_(std::move(running)) {}

Result<std::unique_ptr<FeedHttpServer>, std::string> FeedHttpServer::start(FeedKeeper& keeper,
                                                                           Clock const& clock,
                                                                           std::string const& address,
                                                                           int port, Limits limits) {
  auto running = std::make_unique<Running>(keeper, clock, limits);
  running->port = port == 0                              ? running->bind_to_any_port(address)
                  : running->bind_to_port(address, port) ? port
                                                         : -1;
  if (running->port < 0) {
    return std::unexpected("the feed server cannot listen on " + address + ":" + std::to_string(port) +
                           "; choose another address or port");
  }
  // The library lets five wait to be accepted; a crowd would lose a second each before it is told to go.
  ::listen(running->listening, SOMAXCONN);
  running->thread = std::jthread([server = running.get()] { server->listen_after_bind(); });
  // A stop before the server has begun to listen would be lost.
  while (!running->is_running()) std::this_thread::yield();
  return std::unique_ptr<FeedHttpServer>(new FeedHttpServer(std::move(running)));
}

FeedHttpServer::~FeedHttpServer() {
  running_->stopAll();
}

int FeedHttpServer::port() const {
  return running_->port;
}

}  // namespace nimbara
