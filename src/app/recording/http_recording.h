// Answers of services on disk: one client writes down what the network answers, the other answers from it as
// the services would have at the moment that its clock shows. The folder's format is described in
// docs/replay.md. Neither decides what is asked. Keys of services are never written.
#pragma once

#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// What tells requests apart: host, path and sorted query, without the scheme, the services' keys and the
/// parameters that change with time. Every host on the same machine is "*".
std::string recordingKey(std::string_view url);

/// A line of the index.
struct RecordedAnswer {
  Instant time;
  std::string url;  ///< the key above
  int status = 0;   ///< 0: no answer came
  std::map<std::string, std::string> headers;
  std::string body;   ///< name of a file in the folder "bodies"; empty for an empty one
  std::string error;  ///< of no answer: why

  bool operator==(RecordedAnswer const&) const = default;
};

/// Asks the network and writes down what it says. An answer that cannot be written is given all the same.
class RecordingHttpClient final : public HttpClient {
 public:
  RecordingHttpClient(HttpClient& network, Clock const& clock, std::filesystem::path directory);

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;
  /// Why not everything was written; empty when it was. A sentence without a full stop.
  std::string problem() const;

 private:
  HttpRequest withoutValidators(HttpRequest request);
  void record(RecordedAnswer line, std::string const& body);
  void append(RecordedAnswer const& line);

  HttpClient& network_;
  Clock const& clock_;
  std::filesystem::path directory_;
  mutable std::mutex mutex_;     // guards all below
  std::set<std::string> whole_;  ///< what was recorded with a body
  std::string problem_;
};

/// Answers with the newest recorded answer that is no younger than the clock. Without one the request goes to
/// `otherwise` with the clock's moment in the header "Nimbara-Simulated-Time", or fails like a connection.
class RecordedHttpClient final : public HttpClient {
 public:
  /// `otherwise` may be null.
  RecordedHttpClient(std::filesystem::path directory, Clock const& clock, HttpClient* otherwise);

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;
  /// Lines of the index that could be read.
  std::size_t size() const;
  /// There is an answer of that moment or an earlier one.
  bool hasAnyUntil(Instant moment) const;
  /// Why the recording is not read whole; empty when it is.
  std::string const& problem() const { return problem_; }

 private:
  void read(std::string_view index);
  RecordedAnswer const* newest(std::string const& key) const;
  Result<HttpResponse, HttpError> answer(RecordedAnswer const& line, HttpRequest const& request) const;

  std::filesystem::path directory_;
  Clock const& clock_;
  HttpClient* otherwise_;
  std::string problem_;
  std::map<std::string, std::vector<RecordedAnswer>, std::less<>> answers_;  ///< in the order of time
};

}  // namespace nimbara
