// Any bytes as the list of times of either supplier of clouds, and as the picture that it then gives.

#include "feeds/imagery/cloud_service.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace nimbara;

/// Answers everything alike.
class OneAnswer final : public HttpClient {
 public:
  explicit OneAnswer(std::string_view body) : body_(body) {}

  Result<HttpResponse, HttpError> get(HttpRequest const&, std::stop_token) override {
    return HttpResponse{200, {}, std::string(body_)};
  }

 private:
  std::string_view body_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  OneAnswer http({reinterpret_cast<char const*>(data), size});
  FixedClock const clock(*parseIso8601("2026-11-21T09:20:00Z"));
  ImageryRequests requests(http, clock);
  CloudService clouds(requests, clock, {"http://one.example", "http://other.example"});
  CloudReading const reading = clouds.fetch([](std::string_view) { return true; });
  if (!reading.picture) return 0;
  // Neither older than it may be nor of a time to come.
  auto const age = clock.now() - reading.picture->time;
  if (age >= CloudPicture::kLife || age < -std::chrono::minutes(5)) std::abort();
  return 0;
}
