#include "feeds/meteoalarm/meteo_alarm_feed_form.h"

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
constexpr int kNotFound = 404;

}  // namespace

MeteoAlarmFeedForm::MeteoAlarmFeedForm(Clock const& clock, std::string url, std::string accept, Read read)
    : clock_(clock), url_(std::move(url)), accept_(std::move(accept)), read_(std::move(read)) {}

bool MeteoAlarmFeedForm::rests() const {
  return restsUntil_ && clock_.steadyNow() < *restsUntil_;
}

HttpRequest MeteoAlarmFeedForm::request() const {
  HttpRequest request{url_, {{"Accept", accept_}}, kTimeout, kLongestBody};
  request.longestSilence = kLongestSilence;
  return request;
}

std::optional<ServiceFailure> MeteoAlarmFeedForm::ask(HttpClient& http, std::stop_token const& stop) {
  auto const kept = content_ ? std::optional(validators_) : std::nullopt;
  auto const answer = exchange(http, request(), kept, stop);
  restsUntil_.reset();
  if (answer) return *answer ? acceptBody(**answer) : std::nullopt;
  ServiceFailure const& failure = answer.error();
  if (failure.transport == HttpError::Kind::timedOut) restsUntil_ = clock_.steadyNow() + kHangRest;
  if (failure.status == kNotFound) restsUntil_ = clock_.steadyNow() + kMissingFeedRest;
  return failure;
}

std::optional<ServiceFailure> MeteoAlarmFeedForm::acceptBody(HttpResponse const& answer) {
  if (answer.status != kOk) return ServiceFailure::answered(answer.status);
  auto content = read_(answer.body);
  if (!content) {
    return ServiceFailure::of(ServiceFailure::Kind::unreadable,
                              "MeteoAlarm's response is not a valid feed: " + content.error());
  }
  content_ = std::make_shared<MeteoAlarmContent const>(std::move(*content));
  validators_ = Validators::of(answer);
  return std::nullopt;
}

}  // namespace nimbara
