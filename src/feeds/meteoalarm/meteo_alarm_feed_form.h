// One of the forms in which a country's warnings are published: where it lies, how its bodies are read, what
// it said last and whether it may be asked again. Belongs to the country's feed, which serialises its calls.
// Where it has files, all processes of the user's share what it said, its validators and its rests.
#pragma once

#include "feeds/cap/cap_store.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <filesystem>
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

/// What is known of a form besides its body; the file of the same name holds it for other processes.
struct MeteoAlarmFormNote {
  std::string url;                     ///< that was asked
  std::optional<Instant> changedAt;    ///< when the body became what it is
  std::optional<Instant> confirmedAt;  ///< when the service last gave or confirmed it
  Validators validators;               ///< of the body
  std::optional<Instant> restsSince;   ///< it was not found, or hung
  std::int64_t restSeconds = 0;
  std::optional<ServiceFailure> failure;  ///< for which it rests
};

class MeteoAlarmFeedForm {
 public:
  /// The error is a clause.
  using Read = std::function<Result<MeteoAlarmContent, std::string>(std::string_view body)>;

  struct Options {
    std::string url;
    std::string accept;  ///< the kind of documents that it takes
    Read read;
    std::filesystem::path
        file;  ///< of the body; the note lies beside it. Empty: nothing outlives the process
  };

  MeteoAlarmFeedForm(Clock const& clock, Options options);

  /// Takes over what another process has learned since.
  void lookUp();
  /// It was not found, or hangs: nobody waits for it again at once.
  bool rests() const;
  /// Afterwards `content` is what the service has now. A failure leaves what was known: what is not well
  /// formed to its end is not kept, nor what would have it confirmed.
  std::optional<ServiceFailure> ask(HttpClient& http, std::stop_token const& stop);
  /// Null until the service has answered.
  std::shared_ptr<MeteoAlarmContent const> const& content() const { return content_; }
  /// When the service last gave or confirmed the content.
  std::optional<Instant> const& confirmedAt() const { return note_.confirmedAt; }
  /// Why it rests.
  std::optional<ServiceFailure> const& failure() const { return note_.failure; }

 private:
  HttpRequest request() const;
  std::optional<ServiceFailure> acceptBody(HttpResponse const& answer);
  void rest(std::chrono::seconds span, ServiceFailure const& failure);
  void confirm();
  std::filesystem::path noteFile() const;
  void keepNote() const;

  Clock const& clock_;
  Options options_;
  std::shared_ptr<MeteoAlarmContent const> content_;
  MeteoAlarmFormNote note_;
};

}  // namespace nimbara
