#include "feeds/meteoalarm/meteo_alarm_feed_form.h"

#include "base/json/json_codec.h"
#include "feeds/fetching/kept_record.h"

#include <utility>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

/// A service that sends nothing for so long hangs; there is another form to ask for.
constexpr std::chrono::seconds kLongestFeedSilence = 8s;
/// Of a feed that was not found.
constexpr std::chrono::seconds kMissingFeedRest = 1h;
/// Of a service that hangs, so that the country's places do not wait for it one after the other.
constexpr std::chrono::seconds kHangRest = 30s;
constexpr std::size_t kLongestBody = std::size_t{32} << 20;
constexpr std::size_t kLongestNote = std::size_t{64} << 10;
constexpr int kNotFound = 404;

}  // namespace

template <>
inline constexpr auto jsonFields<Validators> =
    FieldList{fieldOr("etag", &Validators::etag), fieldOr("lastModified", &Validators::lastModified)};
template <>
inline constexpr auto jsonFields<MeteoAlarmFormNote> =
    FieldList{field("url", &MeteoAlarmFormNote::url),
              field("changedAt", &MeteoAlarmFormNote::changedAt),
              field("confirmedAt", &MeteoAlarmFormNote::confirmedAt),
              fieldOr("validators", &MeteoAlarmFormNote::validators),
              field("restsSince", &MeteoAlarmFormNote::restsSince),
              fieldOr("restSeconds", &MeteoAlarmFormNote::restSeconds),
              field("failure", &MeteoAlarmFormNote::failure)};

MeteoAlarmFeedForm::MeteoAlarmFeedForm(Clock const& clock, Options options)
    : clock_(clock), options_(std::move(options)) {
  note_.url = options_.url;
}

/// A body that others have changed is read anew; one that is missing or damaged has no validators.
void MeteoAlarmFeedForm::lookUp() {
  if (options_.file.empty()) return;
  auto found = keptRecord<MeteoAlarmFormNote>(noteFile(), kLongestNote);
  if (!found || found->url != options_.url) return;
  if (found->changedAt && found->changedAt != note_.changedAt) {
    auto const body = readFile(options_.file, kLongestBody);
    auto content = body ? options_.read(*body) : std::unexpected(body.error());
    if (!content) {
      found->changedAt = note_.changedAt;
      found->confirmedAt = note_.confirmedAt;
      found->validators = note_.validators;
    } else {
      content_ = std::make_shared<MeteoAlarmContent const>(std::move(*content));
    }
  }
  note_ = std::move(*found);
}

bool MeteoAlarmFeedForm::rests() const {
  return note_.restsSince &&
         isYounger(*note_.restsSince, std::chrono::seconds(note_.restSeconds), clock_.now());
}

HttpRequest MeteoAlarmFeedForm::request() const {
  constexpr std::chrono::milliseconds kTimeout = 60s;
  HttpRequest request{options_.url, {{"Accept", options_.accept}}, kTimeout, kLongestBody};
  request.longestSilence = kLongestFeedSilence;
  return request;
}

std::optional<ServiceFailure> MeteoAlarmFeedForm::ask(HttpClient& http, std::stop_token const& stop) {
  auto const kept = content_ ? std::optional(note_.validators) : std::nullopt;
  auto const answer = exchange(http, request(), kept, stop);
  note_.restsSince.reset();
  note_.failure.reset();
  if (answer && *answer) return acceptBody(**answer);
  if (answer) {
    confirm();
    return std::nullopt;
  }
  ServiceFailure const& failure = answer.error();
  if (failure.transport == HttpError::Kind::timedOut) rest(kHangRest, failure);
  if (failure.status == kNotFound) rest(kMissingFeedRest, failure);
  return failure;
}

std::optional<ServiceFailure> MeteoAlarmFeedForm::acceptBody(HttpResponse const& answer) {
  constexpr int kOk = 200;
  if (answer.status != kOk) return ServiceFailure::answered(answer.status);
  auto content = options_.read(answer.body);
  if (!content) {
    return ServiceFailure::of(ServiceFailure::Kind::unreadable,
                              "MeteoAlarm's response is not a valid feed: " + content.error());
  }
  content_ = std::make_shared<MeteoAlarmContent const>(std::move(*content));
  note_.validators = Validators::of(answer);
  note_.changedAt = clock_.now();
  bool const isKept = options_.file.empty() || writeFileAtomically(options_.file, answer.body).has_value();
  isKept ? confirm() : void(note_.confirmedAt = clock_.now());
  return std::nullopt;
}

void MeteoAlarmFeedForm::confirm() {
  note_.confirmedAt = clock_.now();
  keepNote();
}

void MeteoAlarmFeedForm::rest(std::chrono::seconds span, ServiceFailure const& failure) {
  note_.restsSince = clock_.now();
  note_.restSeconds = span.count();
  note_.failure = failure;
  keepNote();
}

std::filesystem::path MeteoAlarmFeedForm::noteFile() const {
  return std::filesystem::path(options_.file).concat(".asked.json");
}

/// A disk that cannot be written to costs other processes a question of their own.
void MeteoAlarmFeedForm::keepNote() const {
  if (!options_.file.empty()) std::ignore = writeFileAtomically(noteFile(), encodeJson(note_));
}

}  // namespace nimbara
