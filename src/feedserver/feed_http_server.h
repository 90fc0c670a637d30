// The feed server's HTTP side: a thread for each connection up to a limit, beyond which further ones are told
// to come back; a reader has so long to say what it wants and so long to take it. Owned by the program; stops
// with the object.
#pragma once

#include "base/result.h"
#include "feedserver/feed_keeper.h"
#include "platform/clock.h"

#include <memory>
#include <string>

namespace nimbara {

class FeedHttpServer {
 public:
  struct Limits {
    int connections = 512;
    std::chrono::milliseconds idle{5'000};      ///< until a request begins
    std::chrono::milliseconds request{10'000};  ///< until its last header
    std::chrono::milliseconds answer{60'000};   ///< until the last byte is taken
    std::size_t requestBytes = 16 << 10;
  };

  /// Port 0 takes a free one. The error is a sentence.
  static Result<std::unique_ptr<FeedHttpServer>, std::string> start(FeedKeeper& keeper, Clock const& clock,
                                                                    std::string const& address, int port,
                                                                    Limits limits);
  ~FeedHttpServer();
  FeedHttpServer(FeedHttpServer const&) = delete;
  FeedHttpServer& operator=(FeedHttpServer const&) = delete;

  int port() const;

 private:
  struct Running;
  explicit FeedHttpServer(std::unique_ptr<Running> running);

  std::unique_ptr<Running> running_;
};

}  // namespace nimbara
