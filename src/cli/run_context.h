// What commands about a place share: an engine that was not begun, the texts, and the place that was meant.
// Alive as long as the command.
#pragma once

#include "app/engine/engine.h"
#include "app/places/place.h"
#include "app/services/composition.h"
#include "cli/cli.h"
#include "notifications/rules/rule_inputs.h"
#include "providers/common/api_error.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nimbara {

struct ForecastAnswer;

/// Why a command ends without its answer.
struct Failure {
  int exitCode = exitCode::kUnavailable;
  std::string sentence;
  std::optional<APIError> cause;
};

class RunContext {
 public:
  /// What may differ from the command line's own: the demo in place of the services, nothing kept.
  struct Departure {
    std::string servicesBase;
    bool keepsNothing = false;
    WeatherProviderOption provider = WeatherProviderOption::automatic;
    DecorateHttp aroundNetwork;
    /// For all that the command asks; none where each request has its own only.
    std::optional<std::chrono::milliseconds> limit;
  };

  RunContext(CommonOptions const& common, Session const& session, Clock const& clock,
             Departure const& departure);

  /// The place that a text means; without one the selected place. May ask the network for a name.
  Result<Place, Failure> place(std::string const& text);

  /// What went wrong on the way to an answer that came all the same: providers that failed, data that are
  /// old. Empty when nothing did.
  std::string note(ForecastAnswer const& answer) const;
  /// In whose time moments are told: the place's once `place` has found one, else the reader's.
  Calendar const& calendar() const { return calendar_; }
  /// In the reader's time: of several places at once.
  void tellReadersTime() { calendar_ = wording_->fallback; }
  /// "10:20 AM", with the day where it is not today, in that time.
  std::string moment(Instant when) const;
  /// One line on standard error; nothing for an empty sentence.
  void tell(std::string_view sentence) const;
  /// Why a feed failed, as people read it, in the time of `calendar`; whole with --verbose.
  std::string plain(ServiceFailure failure) const;
  std::string plain(InputFailure failure) const;
  /// The same, and what to do.
  std::string advised(std::optional<ServiceFailure> const& failure) const;
  /// Why no forecast was available, with every provider that was asked, and what to do.
  std::string sentenceOf(APIError const& error) const;

  Composition& app();
  Clock const& clock() const { return clock_; }
  Texts const& texts() const { return *wording_->texts; }
  Wording const& wording() const { return *wording_; }
  Settings settings() const { return engine_.settings(); }
  std::string const& servicesBase() const { return engine_.standIn(); }

 private:
  Result<Place, Failure> findPlace(std::string const& text);
  std::string textOf(APIError const& error) const;
  std::string failedProviders() const;

  CommonOptions const& common_;
  Session const& session_;
  Clock const& clock_;
  Engine engine_;
  std::shared_ptr<Wording const> wording_;
  Calendar calendar_;
  std::once_flag asked_;
  std::shared_ptr<Composition> app_;                        ///< from the first question on
  std::vector<std::pair<std::string, APIError>> failures_;  ///< in the order of the attempts
};

/// For commands that ask several services: within 25 s they end with what is known.
inline constexpr std::chrono::milliseconds kCommandLimit{24'000};

/// The command line's own services with the settings' or the given provider.
RunContext::Departure ownServices(CommonOptions const& common, WeatherProviderOption provider);
/// The same within that limit.
RunContext::Departure ownServicesWithin(std::chrono::milliseconds limit, CommonOptions const& common,
                                        WeatherProviderOption provider);

}  // namespace nimbara
