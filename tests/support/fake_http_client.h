// An HTTP client that answers from a list and remembers what it was asked.
#pragma once

#include "platform/http/http_client.h"

#include <deque>
#include <vector>

namespace nimbara::test {

class FakeHttpClient final : public HttpClient {
 public:
  using Answer = Result<HttpResponse, HttpError>;

  void willAnswer(int status, std::string body, HttpHeaders headers = {}) {
    answers_.emplace_back(HttpResponse{status, std::move(headers), std::move(body)});
  }
  void willFail(HttpError error) { answers_.emplace_back(std::unexpected(std::move(error))); }

  Answer get(HttpRequest const& request, std::stop_token) override {
    requests.push_back(request);
    if (answers_.empty())
      return std::unexpected(HttpError{HttpError::Kind::protocol, "no answer was prepared"});
    Answer answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
  }

  std::vector<HttpRequest> requests;

 private:
  std::deque<Answer> answers_;
};

}  // namespace nimbara::test
