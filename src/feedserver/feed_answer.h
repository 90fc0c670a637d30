// What the feed server answers to a request: a pure function of the request's method, conditions and the kept
// body, so that any standard cache in front of it can carry the readers.
#pragma once

#include "feedserver/feed_keeper.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbara {

struct FeedRequest {
  std::string method;
  std::string path;
  QueryParameters query;
  std::string acceptEncoding;
  std::string ifNoneMatch;
  std::string ifModifiedSince;
};

struct FeedAnswer {
  int status = 200;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string contentType = "text/plain; charset=utf-8";
  std::string text;                        ///< of an error
  std::shared_ptr<ServedFeed const> feed;  ///< of a success
  bool isCompressed = false;

  std::string const& body() const { return !feed ? text : isCompressed ? feed->compressed : feed->body; }
};

/// What is asked for; the answer where nothing is to be looked up.
Result<FeedKey, FeedAnswer> understand(FeedRequest const& request);

FeedAnswer answerWith(std::shared_ptr<ServedFeed const> feed, FeedRequest const& request, Instant now);

/// Whether a value of Accept-Encoding takes gzip.
bool acceptsGzip(std::string_view acceptEncoding);

}  // namespace nimbara
