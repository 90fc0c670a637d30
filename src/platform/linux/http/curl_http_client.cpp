#include "platform/linux/http/curl_http_client.h"

#include "base/text/text.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Kind = HttpError::Kind;

constexpr int kMostRedirects = 5;
constexpr milliseconds kConnectTimeout{8'000};
/// Less is silence: one byte now and then keeps nobody waiting.
constexpr long kSlowestBytesASecond = 64;
constexpr std::size_t kMostHeaderBytes = std::size_t{256} << 10;

struct EasyDeleter {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct MultiDeleter {
  void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};
struct ListDeleter {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
struct UrlDeleter {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;

void initialiseOnce() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

/// The parts of a URL that decide where a request goes.
struct Target {
  std::string scheme;
  std::string host;
  std::string port;
  bool valid = false;
};

std::string urlPart(CURLU* url, CURLUPart part, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, flags) != CURLUE_OK) return {};
  std::string copy(text);
  curl_free(text);
  return copy;
}

Target targetOf(std::string const& address) {
  std::unique_ptr<CURLU, UrlDeleter> const url(curl_url());
  if (curl_url_set(url.get(), CURLUPART_URL, address.c_str(), 0) != CURLUE_OK) return {};
  Target target{asciiLowered(urlPart(url.get(), CURLUPART_SCHEME)),
                asciiLowered(urlPart(url.get(), CURLUPART_HOST)),
                urlPart(url.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT), false};
  target.valid = (target.scheme == "http" || target.scheme == "https") && !target.host.empty();
  return target;
}

/// Only to https, or within one port of a host that was not asked by https in the first place.
bool mayFollow(Target const& from, Target const& to) {
  if (!to.valid) return false;
  return to.scheme == "https" || (from.scheme == "http" && to.host == from.host && to.port == from.port);
}

/// Its port is what may make the difference.
std::string textOf(Target const& target) {
  bool const isUsual = target.port == (target.scheme == "https" ? "443" : "80");
  return target.scheme + "://" + target.host + (isUsual ? "" : ":" + target.port);
}

bool sameOrigin(Target const& a, Target const& b) {
  return a.scheme == b.scheme && a.host == b.host && a.port == b.port;
}

/// Secrets are meant for the host that they were given for.
void dropSecrets(HttpHeaders& headers) {
  std::erase_if(headers, [](auto const& header) {
    std::string const name = asciiLowered(header.first);
    return name == "authorization" || name == "cookie";
  });
}

std::string secondsText(milliseconds duration) {
  auto const tenths = (duration.count() + 50) / 100;
  return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10)) + " s";
}

struct CodeRow {
  CURLcode code;
  Kind kind;
  std::string_view before;  // the host's name goes between
  std::string_view after;
};

constexpr CodeRow kCodes[] = {
    {CURLE_URL_MALFORMAT, Kind::invalidUrl, "the address is not a URL", ""},
    {CURLE_COULDNT_RESOLVE_HOST, Kind::unresolvedHost, "could not resolve host ", "{host}"},
    {CURLE_COULDNT_RESOLVE_PROXY, Kind::unresolvedHost, "could not resolve the proxy's host name", ""},
    {CURLE_COULDNT_CONNECT, Kind::connectionFailed, "could not connect to ", "{host}"},
    // A server that was reached has been asked, whatever became of its answer.
    {CURLE_GOT_NOTHING, Kind::truncated, "the server closed the connection without a response", ""},
    {CURLE_SEND_ERROR, Kind::truncated, "the connection was lost while sending the request", ""},
    {CURLE_RECV_ERROR, Kind::truncated, "the connection was lost", ""},
    {CURLE_PEER_FAILED_VERIFICATION, Kind::tlsFailed, "the certificate could not be verified for ", "{host}"},
    {CURLE_SSL_CONNECT_ERROR, Kind::tlsFailed, "could not establish a secure connection to ", "{host}"},
    {CURLE_SSL_CACERT_BADFILE, Kind::tlsFailed, "the system's certificates could not be read", ""},
    {CURLE_SSL_ISSUER_ERROR, Kind::tlsFailed, "the certificate could not be verified for ", "{host}"},
    {CURLE_PARTIAL_FILE, Kind::truncated, "the response was incomplete", ""},
    {CURLE_BAD_CONTENT_ENCODING, Kind::truncated, "the compressed response is damaged", ""},
    {CURLE_FILESIZE_EXCEEDED, Kind::bodyTooLarge, "the response is too large", ""},
    {CURLE_HTTP2, Kind::protocol, "the response is not valid HTTP/2", ""},
    {CURLE_HTTP2_STREAM, Kind::truncated, "the response was incomplete", ""},
    {CURLE_WEIRD_SERVER_REPLY, Kind::protocol, "the response is not HTTP", ""},
    {CURLE_UNSUPPORTED_PROTOCOL, Kind::protocol, "the response is not HTTP", ""},
};

}  // namespace

/// One multi and one easy handle, used by one call at a time. The multi handle keeps the connections.
class CurlHttpClient::Session {
 public:
  explicit Session(CurlOptions const& options)
      : multi_(curl_multi_init()), easy_(curl_easy_init()), options_(options) {}

  ~Session() {
    // The easy handle must leave the multi handle before either goes.
    easy_.reset();
  }

  Result<HttpResponse, HttpError> exchange(HttpRequest const& request, std::stop_token const& stop);

 private:
  /// One request and its answer, without redirects.
  struct Attempt {
    CURLcode code = CURLE_OK;
    bool isConnected = false;
    bool fellSilent = false;  ///< timed out before its time
    bool tooLarge = false;
    std::string redirect;  ///< where the answer points to; empty when nowhere
    HttpResponse response;
  };

  struct Receiver {
    CURL* easy;
    Attempt& attempt;
    std::size_t limit;
    std::size_t headerBytes = 0;
  };

  std::optional<Attempt> attempt(HttpRequest const& request, steady_clock::time_point deadline,
                                 std::stop_token const& stop);
  void setOptions(HttpRequest const& request, curl_slist* headers, milliseconds timeout);
  /// False when the call is to stop.
  bool drive(CURLcode& code, steady_clock::time_point deadline, std::stop_token const& stop);
  std::optional<CURLcode> outcome();

  static std::size_t receiveBody(char* data, std::size_t size, std::size_t count, void* receiver);
  static std::size_t receiveHeader(char* data, std::size_t size, std::size_t count, void* receiver);
  static HttpError errorOf(Attempt const& attempt, HttpRequest const& request, Target const& target);

  std::unique_ptr<CURLM, MultiDeleter> multi_;
  std::unique_ptr<CURL, EasyDeleter> easy_;
  CurlOptions const& options_;
};

std::size_t CurlHttpClient::Session::receiveBody(char* data, std::size_t size, std::size_t count,
                                                 void* receiver) {
  auto& self = *static_cast<Receiver*>(receiver);
  std::size_t const bytes = size * count;
  std::string& body = self.attempt.response.body;
  if (bytes > self.limit - body.size()) {
    self.attempt.tooLarge = true;
    return 0;
  }
  body.append(data, bytes);
  return bytes;
}

std::size_t CurlHttpClient::Session::receiveHeader(char* data, std::size_t size, std::size_t count,
                                                   void* receiver) {
  auto& self = *static_cast<Receiver*>(receiver);
  std::size_t const bytes = size * count;
  self.headerBytes += bytes;
  if (self.headerBytes > kMostHeaderBytes) return 0;
  std::string_view const line = trimmed({data, bytes});
  HttpHeaders& headers = self.attempt.response.headers;
  // A status line opens a new block; an interim answer's headers do not count.
  if (line.starts_with("HTTP/")) headers.clear();
  auto const colon = line.find(':');
  if (colon != std::string_view::npos && !line.starts_with("HTTP/")) {
    headers.emplace_back(line.substr(0, colon), trimmed(line.substr(colon + 1)));
  }
  return bytes;
}

void CurlHttpClient::Session::setOptions(HttpRequest const& request, curl_slist* headers,
                                         milliseconds timeout) {
  CURL* const easy = easy_.get();
  curl_easy_reset(easy);
  curl_easy_setopt(easy, CURLOPT_URL, request.url.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, options_.userAgent.c_str());
  curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_2TLS);
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(timeout.count()));
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                   static_cast<long>(std::min(timeout, kConnectTimeout).count()));
  // A call that is told to stop must not wait for the resolver's thread.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  if (!options_.caFile.empty()) curl_easy_setopt(easy, CURLOPT_CAINFO, options_.caFile.c_str());
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(request.maxBodyBytes));
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &receiveBody);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &receiveHeader);
  if (auto const silence = request.longestSilence) {
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, kSlowestBytesASecond);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, static_cast<long>(silence->count()));
  }
  if (!request.body) return;
  curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body->size()));
  curl_easy_setopt(easy, CURLOPT_POSTFIELDS, request.body->data());
}

std::optional<CURLcode> CurlHttpClient::Session::outcome() {
  int left = 0;
  while (CURLMsg const* const message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg == CURLMSG_DONE) return message->data.result;
  }
  return std::nullopt;
}

bool CurlHttpClient::Session::drive(CURLcode& code, steady_clock::time_point deadline,
                                    std::stop_token const& stop) {
  std::stop_callback const wake(stop, [this] { curl_multi_wakeup(multi_.get()); });
  while (!stop.stop_requested()) {
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    if (auto const result = outcome()) {
      code = *result;
      return true;
    }
    auto const left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    if (left <= milliseconds(0)) {
      code = CURLE_OPERATION_TIMEDOUT;
      return true;
    }
    curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(std::min(left, milliseconds(1000)).count()),
                    nullptr);
  }
  return false;
}

std::optional<CurlHttpClient::Session::Attempt> CurlHttpClient::Session::attempt(
    HttpRequest const& request, steady_clock::time_point deadline, std::stop_token const& stop) {
  HeaderList headers;
  for (auto const& [name, value] : request.headers) {
    headers.reset(curl_slist_append(headers.release(), (name + ": " + value).c_str()));
  }
  auto const left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
  setOptions(request, headers.get(), std::max(left, milliseconds(1)));
  Attempt attempt;
  Receiver receiver{easy_.get(), attempt, request.maxBodyBytes};
  curl_easy_setopt(easy_.get(), CURLOPT_WRITEDATA, &receiver);
  curl_easy_setopt(easy_.get(), CURLOPT_HEADERDATA, &receiver);
  curl_multi_add_handle(multi_.get(), easy_.get());
  bool const finished = drive(attempt.code, deadline, stop);
  attempt.fellSilent = attempt.code == CURLE_OPERATION_TIMEDOUT && steady_clock::now() < deadline &&
                       request.longestSilence.has_value();
  long status = 0;
  char* redirect = nullptr;
  char* peer = nullptr;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  curl_easy_getinfo(easy_.get(), CURLINFO_PRIMARY_IP, &peer);
  attempt.isConnected = peer != nullptr && *peer != '\0';
  curl_easy_getinfo(easy_.get(), CURLINFO_REDIRECT_URL, &redirect);
  attempt.response.status = static_cast<int>(status);
  if (redirect != nullptr) attempt.redirect = redirect;
  curl_multi_remove_handle(multi_.get(), easy_.get());
  if (!finished) return std::nullopt;
  return attempt;
}

HttpError CurlHttpClient::Session::errorOf(Attempt const& attempt, HttpRequest const& request,
                                           Target const& target) {
  if (attempt.tooLarge) return {Kind::bodyTooLarge, "the response is too large"};
  if (attempt.code == CURLE_OPERATION_TIMEDOUT && !attempt.isConnected) {
    return {Kind::connectionFailed,
            "no connection to " + target.host + " within " + secondsText(request.timeout)};
  }
  if (attempt.fellSilent) {
    return {Kind::timedOut, target.host + " sent nothing for " +
                                secondsText(request.longestSilence.value_or(std::chrono::seconds(0)))};
  }
  if (attempt.code == CURLE_OPERATION_TIMEDOUT) {
    return {Kind::timedOut,
            "no complete response from " + target.host + " within " + secondsText(request.timeout)};
  }
  // A connection that breaks behind the headers has cut the body.
  if (attempt.code == CURLE_RECV_ERROR && attempt.response.status != 0) {
    return {Kind::truncated, "the response was incomplete"};
  }
  auto const row = std::ranges::find(kCodes, attempt.code, &CodeRow::code);
  if (row == std::ranges::end(kCodes)) {
    return {Kind::protocol, "the exchange failed (" + asciiLowered(curl_easy_strerror(attempt.code)) + ")"};
  }
  return {row->kind, std::string(row->before) + (row->after.empty() ? "" : target.host)};
}

Result<HttpResponse, HttpError> CurlHttpClient::Session::exchange(HttpRequest const& request,
                                                                  std::stop_token const& stop) {
  HttpError const cancelled{Kind::cancelled, "the request was cancelled"};
  auto const deadline = steady_clock::now() + request.timeout;
  HttpRequest hop = request;
  for (int redirects = 0; redirects <= kMostRedirects; ++redirects) {
    Target const target = targetOf(hop.url);
    if (!target.valid)
      return std::unexpected(HttpError{Kind::invalidUrl, "the address is not an http or https URL"});
    auto made = attempt(hop, deadline, stop);
    if (!made) return std::unexpected(cancelled);
    if (made->code != CURLE_OK) return std::unexpected(errorOf(*made, request, target));
    if (made->redirect.empty()) return std::move(made->response);
    Target const next = targetOf(made->redirect);
    if (!mayFollow(target, next)) {
      std::string const where = next.host.empty() ? "elsewhere" : "to " + textOf(next);
      return std::unexpected(HttpError{
          Kind::refusedRedirect, target.host + " redirects " + where + ", which is not safe to follow"});
    }
    if (!sameOrigin(target, next)) dropSecrets(hop.headers);
    hop.url = made->redirect;
  }
  return std::unexpected(HttpError{Kind::refusedRedirect, "the server redirects endlessly"});
}

CurlHttpClient::CurlHttpClient(CurlOptions options) : options_(std::move(options)) {
  initialiseOnce();
}

CurlHttpClient::~CurlHttpClient() = default;

std::unique_ptr<CurlHttpClient::Session> CurlHttpClient::takeSession() {
  std::lock_guard const lock(mutex_);
  if (idle_.empty()) return std::make_unique<Session>(options_);
  auto session = std::move(idle_.back());
  idle_.pop_back();
  return session;
}

void CurlHttpClient::giveBack(std::unique_ptr<Session> session) {
  std::lock_guard const lock(mutex_);
  idle_.push_back(std::move(session));
}

Result<HttpResponse, HttpError> CurlHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  auto session = takeSession();
  auto result = session->exchange(request, stop);
  giveBack(std::move(session));
  return result;
}

}  // namespace nimbara
