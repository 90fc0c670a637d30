#include "feeds/meteoalarm/meteo_alarm_feed_form.h"

#include "feeds/fetching/feed_problem.h"

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kTimeout = 60s;
/// A service that sends nothing for so long hangs; there is another form to ask for.
constexpr std::chrono::seconds kLongestSilence = 8s;
/// Of a feed that was not found.
constexpr std::chrono::milliseconds kMissingFeedRest = 1h;
/// Of a service that hangs, so that the country's places do not wait for it one after the other.
constexpr std::chrono::milliseconds kHangRest = 30s;
constexpr std::size_t kLongestBody = std::size_t{32} << 20;
constexpr int kOk = 200;
constexpr int kNotModified = 304;
constexpr int kNotFound = 404;

std::optional<std::string> headerOf(HttpResponse const& answer, std::string_view name) {
  auto const value = answer.header(name);
  return value ? std::optional(std::string(*value)) : std::nullopt;
}

}  // namespace

MeteoAlarmFeedForm::MeteoAlarmFeedForm(Clock const& clock, std::string url, std::string accept, Read read)
    : clock_(clock), url_(std::move(url)), accept_(std::move(accept)), read_(std::move(read)) {}

bool MeteoAlarmFeedForm::rests() const {
  return restsUntil_ && clock_.steadyNow() < *restsUntil_;
}

HttpRequest MeteoAlarmFeedForm::request() const {
  HttpHeaders headers{{"Accept", accept_}};
  if (validators_.etag) headers.emplace_back("If-None-Match", *validators_.etag);
  if (validators_.lastModified) headers.emplace_back("If-Modified-Since", *validators_.lastModified);
  HttpRequest request{url_, std::move(headers), kTimeout, kLongestBody};
  request.longestSilence = kLongestSilence;
  return request;
}

Result<void, std::string> MeteoAlarmFeedForm::accept(Result<HttpResponse, HttpError> const& answer) {
  restsUntil_.reset();
  if (!answer) {
    if (answer.error().kind == HttpError::Kind::timedOut) restsUntil_ = clock_.steadyNow() + kHangRest;
    return std::unexpected(networkProblem(answer.error()));
  }
  if (answer->status == kOk) return acceptBody(*answer);
  if (answer->status == kNotModified && content_) return {};
  if (answer->status == kNotFound) restsUntil_ = clock_.steadyNow() + kMissingFeedRest;
  return std::unexpected(statusProblem(answer->status));
}

Result<void, std::string> MeteoAlarmFeedForm::acceptBody(HttpResponse const& answer) {
  auto content = read_(answer.body);
  if (!content) return std::unexpected("MeteoAlarm's response is not a valid feed: " + content.error());
  content_ = std::make_shared<MeteoAlarmContent const>(std::move(*content));
  validators_ = {headerOf(answer, "ETag"), headerOf(answer, "Last-Modified")};
  return {};
}

}  // namespace nimbara
