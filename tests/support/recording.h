// A recording of services' answers that a test makes up, in the program's own format.
#pragma once

#include "app/recording/http_recording.h"
#include "support/instants.h"
#include "support/temporary_folder.h"

#include <fmt/format.h>

#include <string>
#include <vector>

namespace nimbara::test {

/// Says what it was told to say.
class OneAnswer final : public HttpClient {
 public:
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token) override {
    last = request;
    return answer;
  }

  Result<HttpResponse, HttpError> answer;
  HttpRequest last;
};

class Recording {
 public:
  std::filesystem::path const& path() const { return folder_.path(); }

  void add(std::string const& time, std::string const& url, std::string body, int status = 200) {
    write(time, url, HttpResponse{status, {{"Content-Type", "application/json"}}, std::move(body)});
  }
  void addFailure(std::string const& time, std::string const& url) {
    write(time, url, std::unexpected(HttpError{HttpError::Kind::timedOut, "no answer"}));
  }

 private:
  void write(std::string const& time, std::string const& url, Result<HttpResponse, HttpError> answer) {
    FixedClock const clock(at(time));
    OneAnswer network;
    network.answer = std::move(answer);
    HttpRequest request;
    request.url = url;
    std::ignore = RecordingHttpClient(network, clock, folder_.path()).get(request);
  }

  TemporaryFolder folder_;
};

/// One message of the national weather service of the United States.
struct NwsMessage {
  std::string id;
  std::string event = "Flood Warning";
  std::string severity = "Severe";
  std::string type = "Alert";
  std::string sent;
  std::string ends;
  std::string references;  ///< one identifier, or none
  std::string text = "Move to higher ground.";
  std::string status = "Actual";
};

inline std::string nwsList(std::vector<NwsMessage> const& messages) {
  std::string features;
  for (NwsMessage const& one : messages) {
    std::string const references =
        one.references.empty() ? "" : fmt::format(R"({{"identifier":"{}"}})", one.references);
    features += fmt::format(
        R"({}{{"type":"Feature","geometry":null,"properties":{{"id":"{}","event":"{}","severity":"{}",)"
        R"("urgency":"Expected","certainty":"Likely","status":"{}","messageType":"{}","sent":"{}","onset":"{}",)"
        R"("expires":"{}","ends":"{}","headline":"{}","description":"{}","areaDesc":"County",)"
        R"("references":[{}]}}}})",
        features.empty() ? "" : ",", one.id, one.event, one.severity, one.status, one.type, one.sent,
        one.sent, one.ends, one.ends, one.text, one.text, references);
  }
  return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

}  // namespace nimbara::test
