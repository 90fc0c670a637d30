#include "app/recording/http_recording.h"

#include "base/files/file.h"
#include "base/files/private_folders.h"
#include "base/json/json_codec.h"
#include "base/sha256.h"
#include "base/text/text.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace nimbara {

template <>
inline constexpr auto jsonFields<RecordedAnswer> =
    FieldList{field("time", &RecordedAnswer::time),       field("url", &RecordedAnswer::url),
              fieldOr("status", &RecordedAnswer::status), fieldOr("headers", &RecordedAnswer::headers),
              fieldOr("body", &RecordedAnswer::body),     fieldOr("error", &RecordedAnswer::error)};
template Result<RecordedAnswer, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::string_view kIndex = "index.jsonl";
constexpr std::string_view kBodies = "bodies";
constexpr std::size_t kLongestIndex = std::size_t{256} << 20;
constexpr std::size_t kNameLength = 32;
constexpr int kUnchanged = 304;
constexpr char kSimulatedTime[] = "Nimbara-Simulated-Time";

/// Keys of services, and moments that a client asks about.
constexpr std::string_view kVolatile[] = {"apikey",     "hourlyStart", "hourlyEnd",
                                          "dailyStart", "dailyEnd",    "since"};
/// What clients read of an answer beside its body.
constexpr std::string_view kKeptHeaders[] = {"content-type", "etag", "last-modified", "cache-control",
                                             "expires",      "date", "retry-after"};
constexpr std::string_view kValidators[] = {"if-none-match", "if-modified-since"};
/// A service that has its key in the path: the segment behind this.
constexpr std::string_view kKeyFollows = "/api/area/csv/";

bool isOneOf(std::span<std::string_view const> names, std::string_view name) {
  return std::ranges::count(names, name) > 0;
}

std::string sortedQuery(std::string_view query) {
  std::vector<std::string_view> parts;
  for (std::string_view const part : split(query, '&')) {
    if (!isOneOf(kVolatile, part.substr(0, part.find('=')))) parts.push_back(part);
  }
  std::ranges::sort(parts);
  std::string text;
  for (std::string_view const part : parts) text += (text.empty() ? "?" : "&") + std::string(part);
  return text;
}

bool isOwnMachine(std::string_view host) {
  std::string_view const name = host.substr(0, host.find(':'));
  return name == "127.0.0.1" || name == "localhost" || host.starts_with("[::1]");
}

std::string withoutKey(std::string path) {
  if (auto const found = path.find(kKeyFollows); found == 0) {
    auto const begin = kKeyFollows.size();
    path.replace(begin, path.find('/', begin) - begin, "KEY");
  }
  return path;
}

bool isPlainName(std::string_view name) {
  return std::ranges::all_of(name, [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z'); });
}

/// The host's own place gives way to that of any stand-in.
std::string anyHost(std::string const& key) {
  return "*" + key.substr(std::min(key.find('/'), key.size()));
}

HttpError noConnection(std::string message) {
  return {HttpError::Kind::connectionFailed, std::move(message)};
}

}  // namespace

std::string recordingKey(std::string_view url) {
  if (auto const scheme = url.find("://"); scheme != std::string_view::npos) url.remove_prefix(scheme + 3);
  url = url.substr(0, url.find('#'));
  auto const query = url.find('?');
  std::string_view const address = url.substr(0, query);
  auto const slash = std::min(address.find('/'), address.size());
  std::string_view const host = address.substr(0, slash);
  std::string key = isOwnMachine(host) ? "*" : std::string(host);
  key += withoutKey(std::string(address.substr(slash)));
  return query == std::string_view::npos ? key : key + sortedQuery(url.substr(query + 1));
}

// ---- Writing

RecordingHttpClient::RecordingHttpClient(HttpClient& network, Clock const& clock,
                                         std::filesystem::path directory)
    : network_(network), clock_(clock), directory_(std::move(directory)) {}

Result<HttpResponse, HttpError> RecordingHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  // What is sent is the user's own, as to a language model, and its answer no service's.
  if (request.body) return network_.get(request, std::move(stop));
  auto answer = network_.get(withoutValidators(request), std::move(stop));
  RecordedAnswer line{clock_.now(), recordingKey(request.url), 0, {}, {}, {}};
  if (!answer) {
    line.error = enumName(answer.error().kind);
    if (answer.error().kind != HttpError::Kind::cancelled) record(std::move(line), {});
    return answer;
  }
  line.status = answer->status;
  for (auto const& [name, value] : answer->headers) {
    if (std::string const lowered = asciiLowered(name); isOneOf(kKeptHeaders, lowered))
      line.headers[lowered] = value;
  }
  record(std::move(line), answer->body);
  return answer;
}

/// What is asked for the first time comes whole: the recording stands for itself.
HttpRequest RecordingHttpClient::withoutValidators(HttpRequest request) {
  std::lock_guard const lock(mutex_);
  if (whole_.contains(recordingKey(request.url))) return request;
  std::erase_if(request.headers,
                [](auto const& header) { return isOneOf(kValidators, asciiLowered(header.first)); });
  return request;
}

void RecordingHttpClient::record(RecordedAnswer line, std::string const& body) {
  std::lock_guard const lock(mutex_);
  if (!body.empty()) {
    line.body = sha256Hex(body).substr(0, kNameLength);
    auto const file = directory_ / kBodies / line.body;
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
      if (auto const written = writeFileAtomically(file, body); !written) {
        problem_ = written.error();
        return;
      }
    }
  }
  if (line.status != 0 && line.status != kUnchanged) whole_.insert(line.url);
  append(line);
}

void RecordingHttpClient::append(RecordedAnswer const& line) {
  std::string const text = encodeJson(line) + "\n";
  std::filesystem::path const file = directory_ / kIndex;
  std::ignore = makePrivateFolders(directory_);
  int const descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  bool const isWritten =
      descriptor >= 0 && write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  if (descriptor >= 0) close(descriptor);
  if (!isWritten) problem_ = file.string() + " cannot be written";
}

std::string RecordingHttpClient::problem() const {
  std::lock_guard const lock(mutex_);
  return problem_;
}

// ---- Reading

RecordedHttpClient::RecordedHttpClient(std::filesystem::path directory, Clock const& clock,
                                       HttpClient* otherwise)
    : directory_(std::move(directory)), clock_(clock), otherwise_(otherwise) {
  std::filesystem::path const file = directory_ / kIndex;
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return;
  auto const index = readFile(file, kLongestIndex);
  if (!index) {
    problem_ = index.error();
    return;
  }
  read(*index);
}

void RecordedHttpClient::read(std::string_view index) {
  std::size_t number = 0;
  for (std::string_view const text : split(index, '\n')) {
    ++number;
    if (trimmed(text).empty()) continue;
    auto line = decodeJson<RecordedAnswer>(text);
    if (line && isPlainName(line->body)) {
      std::string const key = recordingKey(line->url);
      answers_[key].push_back(std::move(*line));
    } else if (problem_.empty()) {
      problem_ = (directory_ / kIndex).string() + ", line " + std::to_string(number) +
                 " was skipped: " + (line ? "the body is not a plain file name" : line.error().text());
    }
  }
  for (auto& [key, lines] : answers_) std::ranges::stable_sort(lines, {}, &RecordedAnswer::time);
}

std::size_t RecordedHttpClient::size() const {
  std::size_t count = 0;
  for (auto const& [key, lines] : answers_) count += lines.size();
  return count;
}

bool RecordedHttpClient::hasAnyUntil(Instant moment) const {
  return std::ranges::any_of(answers_, [moment](auto const& entry) {
    return !entry.second.empty() && entry.second.front().time <= moment;
  });
}

RecordedAnswer const* RecordedHttpClient::newest(std::string const& key) const {
  auto found = answers_.find(key);
  if (found == answers_.end()) found = answers_.find(anyHost(key));
  if (found == answers_.end()) return nullptr;
  auto const& lines = found->second;
  auto line = std::ranges::upper_bound(lines, clock_.now(), {}, &RecordedAnswer::time);
  if (line == lines.begin()) return nullptr;
  --line;
  if (line->status != kUnchanged) return &*line;
  // "Unchanged" stands for what was whole before.
  auto const whole =
      std::ranges::find_if(std::reverse_iterator(line), lines.rend(),
                           [](RecordedAnswer const& old) { return old.status >= 200 && old.status <= 299; });
  return whole == lines.rend() ? nullptr : &*whole;
}

Result<HttpResponse, HttpError> RecordedHttpClient::answer(RecordedAnswer const& line,
                                                           HttpRequest const& request) const {
  if (line.status == 0) {
    auto const kind = enumFromName<HttpError::Kind>(line.error).value_or(HttpError::Kind::connectionFailed);
    return std::unexpected(HttpError{kind, "recorded: " + oneLine(line.error)});
  }
  HttpResponse response{line.status, {line.headers.begin(), line.headers.end()}, {}};
  if (line.body.empty()) return response;
  auto body = readFile(directory_ / kBodies / line.body, request.maxBodyBytes);
  if (!body) return std::unexpected(noConnection(body.error()));
  response.body = std::move(*body);
  return response;
}

Result<HttpResponse, HttpError> RecordedHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  if (request.body) return std::unexpected(noConnection("requests with a body are not recorded"));
  if (auto const* const line = newest(recordingKey(request.url))) return answer(*line, request);
  if (otherwise_ == nullptr) return std::unexpected(noConnection("nothing was recorded for it by then"));
  HttpRequest simulated = request;
  simulated.headers.emplace_back(kSimulatedTime, formatIso8601(clock_.now()));
  return otherwise_->get(simulated, std::move(stop));
}

}  // namespace nimbara
