// One of the forms in which a country's warnings are published: where it lies, how its bodies are read, what
// it said last and whether it may be asked again. Belongs to the country's feed, which serialises its calls.
#pragma once

#include "feeds/cap/cap_store.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// What a body says.
struct MeteoAlarmContent {
  MeteoAlarmFeed feed;
  CapDocuments messages;  ///< by address and identifier, where the body has them whole
};

class MeteoAlarmFeedForm {
 public:
  /// The error is a clause.
  using Read = std::function<Result<MeteoAlarmContent, std::string>(std::string_view body)>;

  /// `accept` is the kind of documents that it takes.
  MeteoAlarmFeedForm(Clock const& clock, std::string url, std::string accept, Read read);

  /// It was not found, or hangs: nobody waits for it again at once.
  bool rests() const;
  /// Afterwards `content` is what the service has now. A failure leaves what was known: what is not well
  /// formed to its end is not kept, nor what would have it confirmed.
  std::optional<ServiceFailure> ask(HttpClient& http, std::stop_token const& stop);
  /// Null until the service has answered.
  std::shared_ptr<MeteoAlarmContent const> const& content() const { return content_; }

 private:
  HttpRequest request() const;
  std::optional<ServiceFailure> acceptBody(HttpResponse const& answer);

  Clock const& clock_;
  std::string url_;
  std::string accept_;
  Read read_;
  std::shared_ptr<MeteoAlarmContent const> content_;
  std::optional<std::chrono::steady_clock::time_point> restsUntil_;
  Validators validators_;
};

}  // namespace nimbara
