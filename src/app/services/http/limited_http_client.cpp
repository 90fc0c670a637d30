#include "app/services/http/limited_http_client.h"

namespace nimbara {

using std::chrono::milliseconds;

namespace {

constexpr char kTaken[] = " that a command takes";

std::string secondsOf(milliseconds limit) {
  return std::to_string(std::chrono::floor<std::chrono::seconds>(limit).count()) + " s";
}

}  // namespace

LimitedHttpClient::LimitedHttpClient(std::unique_ptr<HttpClient> client, Clock const& clock,
                                     milliseconds limit)
    : owned_(std::move(client)),
      client_(*owned_),
      clock_(clock),
      limit_(limit),
      end_(clock.steadyNow() + limit) {}

LimitedHttpClient::LimitedHttpClient(HttpClient& network, Clock const& clock, milliseconds limit)
    : client_(network), clock_(clock), limit_(limit), end_(clock.steadyNow() + limit) {}

HttpError LimitedHttpClient::givenUp() const {
  return {HttpError::Kind::cancelled, "there was no response within the " + secondsOf(limit_) + kTaken};
}

/// Nothing has left this machine, and no service is to blame.
HttpError LimitedHttpClient::notAsked() const {
  return {HttpError::Kind::cancelled, "no time was left of the " + secondsOf(limit_) + kTaken};
}

Result<HttpResponse, HttpError> LimitedHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  auto const left = std::chrono::floor<milliseconds>(end_ - clock_.steadyNow());
  if (left <= milliseconds(0)) return std::unexpected(notAsked());
  if (request.timeout <= left) return client_.get(request, std::move(stop));
  HttpRequest shortened = request;
  shortened.timeout = left;
  auto answer = client_.get(shortened, std::move(stop));
  // A service that has fallen silent has done so before the limit.
  bool const isOver = !request.longestSilence || clock_.steadyNow() >= end_;
  bool const isOvertime = isOver && !answer && answer.error().kind == HttpError::Kind::timedOut;
  return isOvertime ? std::unexpected(givenUp()) : std::move(answer);
}

}  // namespace nimbara
