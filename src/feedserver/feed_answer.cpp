#include "feedserver/feed_answer.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/http_date.h"

#include <algorithm>

namespace nimbara {

namespace {

/// How long caches may hold a body whose source fails before they ask us again.
constexpr std::chrono::seconds kHoldWhileFailing{30};

FeedAnswer refusal(int status, std::string text) {
  FeedAnswer answer;
  answer.status = status;
  answer.text = std::move(text);
  answer.headers = {{"Cache-Control", "no-store"}};
  return answer;
}

/// "W/" does not count: a weak comparison is what conditional reading asks for.
bool names(std::string_view list, std::string_view tag) {
  return std::ranges::any_of(split(list, ','), [tag](std::string_view entry) {
    entry = trimmed(entry);
    if (entry.starts_with("W/")) entry.remove_prefix(2);
    return entry == "*" || entry == tag;
  });
}

bool isKnownToReader(FeedRequest const& request, ServedFeed const& feed, std::string_view tag) {
  if (!request.ifNoneMatch.empty()) return names(request.ifNoneMatch, tag);
  auto const since = parseHttpDate(request.ifModifiedSince);
  return since && std::chrono::floor<std::chrono::seconds>(feed.changedAt) <= *since;
}

}  // namespace

bool acceptsGzip(std::string_view acceptEncoding) {
  for (std::string_view const entry : split(acceptEncoding, ',')) {
    auto const parts = split(entry, ';');
    std::string const coding = asciiLowered(trimmed(parts[0]));
    if (coding != "gzip" && coding != "x-gzip" && coding != "*") continue;
    std::string_view const weight = parts.size() > 1 ? trimmed(parts[1]) : std::string_view("q=1");
    return !weight.starts_with("q=") || parseDouble(trimmed(weight.substr(2))).value_or(0) > 0;
  }
  return false;
}

Result<FeedKey, FeedAnswer> understand(FeedRequest const& request) {
  if (request.method != "GET" && request.method != "HEAD") {
    FeedAnswer answer = refusal(405, "only GET and HEAD\n");
    answer.headers.emplace_back("Allow", "GET, HEAD");
    return std::unexpected(std::move(answer));
  }
  if (request.path != "/api/feed.php") return std::unexpected(refusal(404, "no such page\n"));
  auto const key = feedKeyOf(request.query);
  if (!key) return std::unexpected(refusal(400, "no such feed\n"));
  return *key;
}

FeedAnswer answerWith(std::shared_ptr<ServedFeed const> feed, FeedRequest const& request, Instant now) {
  if (!feed) {
    FeedAnswer answer = refusal(502, "the source of this feed has not answered yet\n");
    answer.headers.emplace_back("Retry-After", "60");
    return answer;
  }
  FeedAnswer answer;
  answer.isCompressed = acceptsGzip(request.acceptEncoding) && !feed->compressed.empty();
  std::string const tag = "\"" + feed->tag + (answer.isCompressed ? "-gz\"" : "\"");
  auto const age =
      std::max(std::chrono::seconds(0), std::chrono::floor<std::chrono::seconds>(now - feed->fetchedAt));
  auto const life = std::max(feed->period, age + kHoldWhileFailing);
  auto const left = std::max(std::chrono::seconds(1), life - age);
  answer.headers = {
      {"ETag", tag},
      {"Last-Modified", formatHttpDate(feed->changedAt)},
      {"Date", formatHttpDate(now)},
      {"Age", std::to_string(age.count())},
      {"Cache-Control", "public, max-age=" + std::to_string(life.count()) + ", stale-if-error=86400"},
      // For nginx, which counts max-age from the moment at which it got the answer, whatever its Age.
      {"X-Accel-Expires", std::to_string(left.count())},
      {"Vary", "Accept-Encoding"}};
  if (isKnownToReader(request, *feed, tag)) {
    answer.status = 304;
    return answer;
  }
  if (answer.isCompressed) answer.headers.emplace_back("Content-Encoding", "gzip");
  answer.contentType = feed->contentType;
  answer.feed = std::move(feed);
  return answer;
}

}  // namespace nimbara
