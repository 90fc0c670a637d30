#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/station_linking.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/pages/station_page.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/stations/station_shown.h"
#include "platform/linux/child_process.h"

#include <algorithm>
#include <fcntl.h>
#include <iostream>
#include <termios.h>
#include <unistd.h>

namespace nimbara {

namespace {

using Action = StationOptions::Action;

/// Nothing that is typed is shown while it lives.
class HiddenInput {
 public:
  HiddenInput() {
    isTerminal_ = tcgetattr(STDIN_FILENO, &before_) == 0;
    if (!isTerminal_) return;
    termios hidden = before_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &hidden);
  }
  ~HiddenInput() {
    if (isTerminal_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
  }
  HiddenInput(HiddenInput const&) = delete;
  HiddenInput& operator=(HiddenInput const&) = delete;

 private:
  termios before_{};
  bool isTerminal_ = false;
};

class StationRun {
 public:
  StationRun(CommandLine const& line, Session const& session)
      : options_(line.station),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, WeatherProviderOption::automatic)) {}

  int run() {
    auto const done = act();
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    return done ? exitCode::kComplete : session_.fail(done.error().exitCode, done.error().sentence);
  }

 private:
  using Done = Result<void, Failure>;

  static std::unexpected<Failure> failed(std::string sentence, int code = exitCode::kUnavailable) {
    return std::unexpected(Failure{code, std::move(sentence), {}});
  }

  Done act() {
    switch (options_.action) {
      case Action::link:
        return options_.address.empty() ? linkAccount() : linkAddress();
      case Action::unlink:
        return unlink();
      case Action::choose:
        return choose();
      case Action::list:
        return list();
      case Action::show:
        break;
    }
    return show();
  }

  StationService& service() { return context_.app().feeds().stations(); }
  Texts const& texts() const { return context_.texts(); }
  StationPageOptions look() const { return {styleOf(session_), context_.wording().units, clock_->now()}; }

  /// A line of standard input; shown as it is typed only where it is no secret.
  std::string ask(std::string_view what, bool isSecret) {
    session_.console.err(what);
    std::optional<HiddenInput> hidden;
    if (isSecret) hidden.emplace();
    std::string answer;
    std::getline(std::cin, answer);
    if (isSecret) session_.console.err("\n");
    return std::string(trimmed(answer));
  }

  Done linkAccount() {
    bool const isDemo = !context_.servicesBase().empty();
    StationLink link;
    link.kind = StationLinkKind::account;
    link.clientId = options_.id;
    if (link.clientId.empty()) link.clientId = isDemo ? "demo" : ask("ID of your application: ", false);
    link.clientSecret = isDemo ? "demo" : ask("Its secret: ", true);
    if (link.clientId.empty() || link.clientSecret.empty())
      return failed("an application's ID and secret are needed; make one at https://dev.netatmo.com/apps",
                    exitCode::kUsage);
    auto const linked = options_.hasToken ? adopt(std::move(link), isDemo) : consent(std::move(link));
    if (!linked) return linked;
    return show();
  }

  Done adopt(StationLink link, bool isDemo) {
    link.refreshToken = isDemo ? "demo" : ask("Refresh token: ", true);
    if (link.refreshToken.empty()) return failed("no refresh token was given", exitCode::kUsage);
    return told(linkByToken(service(), link, session_.stop));
  }

  Done consent(StationLink link) {
    ConsentWays ways;
    ways.open = [this](std::string const& url) {
      session_.console.err("The redirect URI of your application must be " + std::string(kConsentRedirect) +
                           "\n");
      session_.console.err("Confirm in the browser: " + url + "\n");
      if (!options_.noBrowser) openBrowser(url);
    };
    ways.done = texts().text("station.page.done");
    ways.failed = texts().text("station.page.failed");
    return told(linkByConsent(service(), std::move(link), ways, session_.stop));
  }

  /// It may be a browser's whole life until that program ends.
  static void openBrowser(std::string const& url) {
    int const nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    pid_t browser = 0;
    std::ignore =
        spawn(browser, "xdg-open", {"xdg-open", url}, environmentVariables(), nothing, nothing, nothing);
    if (nothing >= 0) close(nothing);
  }

  Done told(LinkEnd const& end) {
    using Outcome = LinkEnd::Outcome;
    switch (end.outcome) {
      case Outcome::linked:
        return {};
      case Outcome::portTaken:
        return failed("cannot listen on port 8917 of this computer: " + end.reason +
                      "; end the other program, or link with --token");
      case Outcome::refused:
        return failed("the station was not linked: the service answered " + end.reason);
      case Outcome::late:
        return failed("the station was not linked: nobody came back from the browser in time");
      case Outcome::notAccepted:
        return failed("the service does not accept the application or the token; check its ID and secret");
      case Outcome::tooMany:
        return failed("the service has had too many requests; try again in an hour");
      case Outcome::cancelled:
      case Outcome::noPlace:
      case Outcome::failed:
        break;
    }
    return failed("the station was not linked: " + context_.plain(end.failure));
  }

  /// Whoever writes such a document wants to know what is wrong with it.
  std::string whyUnlinked(ServiceFailure const& failure) const {
    return failure.kind == ServiceFailure::Kind::unreadable ? sentenceOf(failure) : context_.plain(failure);
  }

  Done linkAddress() {
    auto const document = service().probe(options_.address, session_.stop);
    if (!document) return failed("nothing was linked: " + whyUnlinked(document.error().failure));
    StationLink link;
    link.kind = StationLinkKind::address;
    link.address = options_.address;
    link.name = options_.name;
    if (!document->station.place() || !options_.place.empty()) {
      auto const place = context_.place(options_.place);
      if (!place) return std::unexpected(place.error());
      link.latitude = place->coordinate.latitude;
      link.longitude = place->coordinate.longitude;
      if (link.name.empty()) link.name = place->name;
    }
    if (auto const kept = service().relink(link); !kept) return failed(kept.error());
    return show();
  }

  Done unlink() {
    if (auto const removed = service().unlink(); !removed) return failed(removed.error());
    if (options_.json) session_.console.out("{\"state\":\"notLinked\"}\n");
    return {};
  }

  Done choose() {
    if (!options_.place.empty()) return chooseAround();
    if (auto const done = lookAtAccount(); !done) return done;
    StationsReading const reading = service().read(StationNeed::shown, session_.stop);
    auto const wanted = asciiLowered(options_.station);
    StationReading const* chosen = nullptr;
    for (StationReading const& station : reading.stations) {
      bool const isMeant = station.id == options_.station || asciiLowered(station.name).starts_with(wanted);
      if (isMeant && chosen == nullptr) chosen = &station;
    }
    if (chosen == nullptr) {
      std::string const problem = stationProblemText(reading, texts());
      return failed(problem.empty() || !reading.stations.empty()
                        ? "no station is called '" + oneLine(options_.station) + "'; see nimbara station list"
                        : problem);
    }
    return change([id = chosen->id](StationLink& link) { link.chosen = id; });
  }

  /// The public stations of a place are not the account's.
  Done lookAtAccount() {
    auto const link = service().file().read();
    if (!link || link->kind != StationLinkKind::around) return {};
    if (auto const kept = service().file().change(toAccount); !kept) return failed(kept.error());
    return {};
  }

  Done chooseAround() {
    auto const place = context_.place(options_.place);
    if (!place) return std::unexpected(place.error());
    return change([&](StationLink& link) {
      link.kind = StationLinkKind::around;
      link.chosen.clear();
      link.name = place->name;
      link.latitude = place->coordinate.latitude;
      link.longitude = place->coordinate.longitude;
    });
  }

  Done change(std::function<void(StationLink&)> const& apply) {
    auto const link = service().file().read();
    if (link && link->tokensIn() == StationTokensIn::nowhere)
      return failed(std::string(texts().text("station.state.notLinked")));
    if (auto const kept = service().file().change(apply); !kept) return failed(kept.error());
    return show();
  }

  Done list() {
    StationsReading const reading = service().read(StationNeed::shown, session_.stop);
    session_.console.out(options_.json ? stationsJson(reading, clock_->now())
                                       : stationList(reading, texts(), look()));
    return outcomeOf(reading);
  }

  Done show() {
    StationsReading reading = service().read(StationNeed::shown, session_.stop);
    StationShown shown = judged(std::move(reading));
    session_.console.out(options_.json ? stationJson(shown, clock_->now())
                                       : stationPage(shown, texts(), look()));
    return outcomeOf(shown.reading);
  }

  /// By the forecast of the place where the station stands, where one is to be had.
  StationShown judged(StationsReading reading) {
    StationReading const* const station = reading.station();
    auto const stands = station != nullptr ? station->place() : std::nullopt;
    if (stands) {
      Place place;
      place.coordinate = *stands;
      auto answer = context_.app().forecasts().get(place, WeatherProviderOption::automatic, session_.stop);
      if (answer) return overlaid(answer->data, std::move(reading), clock_->now());
    }
    StationShown shown;
    shown.reading = std::move(reading);
    return shown;
  }

  Done outcomeOf(StationsReading const& reading) const {
    std::string const problem = stationProblemText(reading, texts());
    if (problem.empty()) return {};
    return failed(problem);
  }

  StationOptions const& options_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
};

}  // namespace

int runStation(CommandLine const& line, Session const& session) {
  return StationRun(line, session).run();
}

}  // namespace nimbara
