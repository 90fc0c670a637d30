#include "app/places/place_search.h"
#include "app/places/places.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/words/texts.h"
#include "cli/cli.h"
#include "cli/pages/warnings/source_choices.h"
#include "cli/slow_note.h"
#include "feeds/alerts/routing/official_sources.h"
#include "notifications/engine/notification_state.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/network/lazy_http_client.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

namespace {

constexpr std::string_view kHereName = "Current location";
constexpr std::chrono::seconds kLocationTimeout{30};

/// One place as it is listed. Search results that are not saved have no identifier.
struct PlaceEntry {
  std::optional<Uuid> id;
  std::string name;
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::string country;
  bool selected = false;
  std::optional<PlaceChoice> notifications;  ///< what holds for a saved one, chosen or by default
  std::string countryName;
  std::string region;
  std::string timeZone;
  std::optional<Instant> fixTime;                 ///< of the current location
  std::optional<bool> isSuggestion;               ///< similar to a name that was not found
  std::optional<std::string> otherName = {};      ///< by which a search found it
  std::optional<std::string> warningSource = {};  ///< chosen for a saved one
};

using Entries = std::vector<PlaceEntry>;
using Action = PlacesOptions::Action;

/// What is not saved has no identifier, and says so.
std::string json(Entries const& entries) {
  JsonWriter writer;
  writer.beginList();
  for (PlaceEntry const& entry : entries) {
    writer.separate();
    writer.beginObject();
    writer.memberOrNull("id", entry.id);
    writer.member("name", entry.name);
    writer.memberOrNull("latitude", entry.latitude);
    writer.memberOrNull("longitude", entry.longitude);
    writer.member("country", entry.country);
    writer.member("selected", entry.selected);
    writer.member("countryName", entry.countryName);
    writer.member("region", entry.region);
    writer.member("timeZone", entry.timeZone);
    writer.member("fixTime", entry.fixTime);
    writer.memberOrNull("notifications", entry.notifications);
    writer.member("suggestion", entry.isSuggestion);
    writer.member("matchedName", entry.otherName);
    writer.member("warningSource", entry.warningSource);
    writer.endObject();
  }
  writer.endList();
  return writer.take() + "\n";
}

PlaceEntry entryOf(SavedPlace const& place, std::optional<Uuid> id, bool selected) {
  return {id,
          place.name,
          place.coordinate.latitude,
          place.coordinate.longitude,
          place.country,
          selected,
          {},
          place.countryName,
          place.region,
          place.timeZone,
          {},
          {}};
}

PlaceEntry hereEntry(PlaceList const& list) {
  PlaceEntry entry;
  entry.id = kCurrentLocation;
  entry.name = kHereName;
  entry.selected = list.selected == kCurrentLocation;
  // Nobody looks there while another place is selected.
  entry.notifications = entry.selected ? PlaceChoice::everything : PlaceChoice::nothing;
  if (!list.lastFix) return entry;
  entry.latitude = list.lastFix->coordinate.latitude;
  entry.longitude = list.lastFix->coordinate.longitude;
  entry.fixTime = list.lastFix->time;
  return entry;
}

Entries entriesOf(PlaceList const& list, bool everyPlace) {
  Entries entries;
  if (list.offersCurrentLocation) entries.push_back(hereEntry(list));
  for (SavedPlace const& place : list.places) {
    PlaceEntry& entry = entries.emplace_back(entryOf(place, place.id, list.selected == place.id));
    entry.notifications = effectiveChoice(place.notifications, entry.selected, everyPlace);
    entry.warningSource = place.warningSource;
  }
  return entries;
}

std::string ageOf(Instant fix, Instant now) {
  auto const minutes = std::max<std::int64_t>(0, std::chrono::floor<std::chrono::minutes>(now - fix).count());
  return minutes < 120 ? std::to_string(minutes) + " min ago" : std::to_string(minutes / 60) + " h ago";
}

std::string whereabouts(PlaceEntry const& entry, Instant now) {
  if (!entry.latitude || !entry.longitude) return "not known yet";
  std::string text = formatCoordinate({*entry.latitude, *entry.longitude});
  if (entry.fixTime) text += ", " + ageOf(*entry.fixTime, now);
  return text;
}

std::string fullName(PlaceEntry const& entry) {
  std::string name = entry.otherName ? *entry.otherName + " (" + entry.name + ")" : entry.name;
  for (std::string const& part : {entry.region, entry.countryName}) {
    if (!part.empty() && part != entry.name) name += ", " + part;
  }
  return name;
}

std::string choiceText(PlaceEntry const& entry, Texts const& texts) {
  return std::string(texts.text("places.notifications." + std::string(enumName(*entry.notifications))));
}

/// Columns: position, a mark of the selected one, name, coordinate, what is notified of. The current location
/// has no position, and what is not saved notifies of nothing.
std::string table(Entries const& entries, Instant now, Texts const& texts, bool ascii) {
  int width = 0;
  int whereWidth = 0;
  for (PlaceEntry const& entry : entries) {
    width = std::max(width, displayWidth(fullName(entry)));
    whereWidth = std::max(whereWidth, displayWidth(whereabouts(entry, now)));
  }
  std::string out;
  int position = 0;
  for (PlaceEntry const& entry : entries) {
    bool const here = entry.id == kCurrentLocation;
    std::string const number = here ? "" : std::to_string(++position);
    out += fitted(number, 3, Align::right) + (entry.selected ? " * " : "   ") +
           fitted(fullName(entry), width) + "  ";
    out += entry.notifications ? fitted(whereabouts(entry, now), whereWidth) + "  " + choiceText(entry, texts)
                               : whereabouts(entry, now);
    out += "\n";
  }
  return ascii ? asciiFolded(out) : out;
}

/// One run of `nimbara places`.
class PlacesRun {
 public:
  PlacesRun(CommandLine const& line, Session const& session)
      : options_(line.places),
        common_(line.common),
        session_(session),
        clock_(makeClock(line.common)),
        places_(*session.store) {}

  int run() {
    switch (options_.action) {
      case Action::list:
        return finish(places_.list());
      case Action::search:
        return search();
      case Action::add:
        return add();
      case Action::select:
        if (options_.here) return selectHere();
        return changeSaved(selectPlace);
      case Action::remove:
        if (options_.here) return finish(places_.change(removeCurrentLocation));
        return removeSaved();
      case Action::rename:
        return changeSaved(
            [this](PlaceList& list, Uuid const& id) { return renamePlace(list, id, options_.name); });
      case Action::notify:
        return choose();
      case Action::source:
        return chooseSource();
      case Action::move:
        return changeSaved(
            [this](PlaceList& list, Uuid const& id) { return movePlace(list, id, options_.position); });
    }
    return exitCode::kUsage;
  }

 private:
  int unavailable(std::string_view sentence) const { return session_.fail(exitCode::kUnavailable, sentence); }

  int finish(Result<PlaceList, StoreError> const& list) {
    if (!list) return unavailable(list.error().message);
    return show(entriesOf(*list, session_.settings->boolean("notify_everyPlace")),
                options_.action == Action::list);
  }

  /// A change prints the new list only to scripts.
  int show(Entries const& entries, bool always) {
    if (options_.json) {
      session_.console.out(json(entries));
    } else if (always && entries.empty()) {
      session_.console.err("nimbara: no saved places; add one with: nimbara places add NAME\n");
    } else if (always) {
      session_.console.out(table(entries, clock_->now(), texts(), !session_.environment.utf8));
    }
    return exitCode::kComplete;
  }

  int changeSaved(std::function<PlaceResult(PlaceList&, Uuid const&)> const& change) {
    return finish(places_.change([&](PlaceList& list) -> PlaceResult {
      SavedPlace const* const place = list.find(options_.place);
      if (place == nullptr) return std::unexpected("there is no saved place '" + options_.place + "'");
      return change(list, Uuid(place->id));
    }));
  }

  PlaceChoice choiceOf(SavedPlace const& place, bool isSelected) const {
    return effectiveChoice(place.notifications, isSelected, session_.settings->boolean("notify_everyPlace"));
  }

  /// The choice of a place as it is.
  int showChoice() {
    auto const list = places_.list();
    if (!list) return unavailable(list.error().message);
    SavedPlace const* const place = list->find(options_.place);
    if (place == nullptr) return unavailable("there is no saved place '" + options_.place + "'");
    PlaceEntry entry = entryOf(*place, place->id, list->selected == place->id);
    entry.notifications = choiceOf(*place, entry.selected);
    return show({std::move(entry)}, true);
  }

  int choose() {
    if (options_.name.empty()) return showChoice();
    std::optional<PlaceChoice> const choice = enumFromName<PlaceChoice>(options_.name);
    return changeSaved(
        [&](PlaceList& list, Uuid const& id) { return chooseNotifications(list, id, choice); });
  }

  /// The sources that are possible for the place, the usual one first; * marks the one that is asked first.
  int showSources() {
    auto const list = places_.list();
    if (!list) return unavailable(list.error().message);
    SavedPlace const* const place = list->find(options_.place);
    if (place == nullptr) return unavailable("there is no saved place '" + options_.place + "'");
    auto const choices = sourceChoices(*place);
    session_.console.out(options_.json ? encodeJson(choices) + "\n" : sourceTable(choices));
    return exitCode::kComplete;
  }

  int chooseSource() {
    if (options_.name.empty()) return showSources();
    bool const isKnown = options_.name == kUsualSource || officialSource(options_.name) != nullptr;
    if (!isKnown) {
      return session_.fail(exitCode::kUsage,
                           "'" + oneLine(options_.name) +
                               "' is not a source of official warnings; nimbara places source " +
                               oneLine(options_.place) + " lists them");
    }
    return changeSaved(
        [this](PlaceList& list, Uuid const& id) { return chooseWarningSource(list, id, options_.name); });
  }

  Texts const& texts() {
    if (!texts_) texts_ = Texts::load(common_.language);
    return *texts_;
  }

  int removeSaved() {
    int const code = changeSaved(removePlace);
    if (code == exitCode::kComplete) disableRulesWithoutPlace();
    return code;
  }

  /// Rules that watched the place are kept, disabled.
  void disableRulesWithoutPlace() {
    auto const list = places_.list();
    if (!list) return;
    std::vector<Uuid> ids;
    std::ranges::transform(list->places, std::back_inserter(ids), &SavedPlace::id);
    auto const rules = NotificationState(*session_.store).disableWithoutPlace(ids);
    if (!rules) session_.console.err("nimbara: " + rules.error().message + "\n");
  }

  Result<std::vector<FoundPlace>, APIError> found() {
    Configuration const configuration = configurationOf(*session_.settings);
    LazyHttpClient http(session_.environment.program, userAgent(configuration));
    ServiceDirectory const services(configuration, common_.services);
    PlaceSearch search(http, services);
    SlowNote const note(session_, "searching online …");
    return search.search(options_.place, texts().language(), options_.online, session_.stop);
  }

  int failSearch(std::string const& sentence) const {
    bool const interrupted = session_.stop.stop_requested();
    return interrupted ? session_.fail(exitCode::kInterrupted, "interrupted") : unavailable(sentence);
  }

  /// Above the similar names. That nobody could look further stands behind what is of use.
  std::string similarSentence(APIError const& error) const {
    if (error.kind == APIError::Case::noResults) {
      return missingSentence(options_.place, error) + "; these names are similar";
    }
    std::string why = error.text();
    if (why.ends_with('.')) why.pop_back();
    return "these names are similar to '" + oneLine(options_.place, 100) + "'; the online search failed (" +
           why + ")";
  }

  int search() {
    auto const list = places_.list();
    auto matches = found();
    bool const isSuggestion = !matches;
    if (!matches) {
      auto similar = similarPlaces(options_.place, texts().language());
      if (similar.empty() || session_.stop.stop_requested()) {
        return failSearch(missingSentence(options_.place, matches.error()));
      }
      session_.console.err("nimbara: " + similarSentence(matches.error()) + "\n");
      matches = std::move(similar);
    }
    Entries entries;
    for (FoundPlace const& match : *matches) {
      SavedPlace const* const saved = list ? list->findNear(match.coordinate) : nullptr;
      auto const id = saved == nullptr ? std::nullopt : std::optional(saved->id);
      PlaceEntry& entry = entries.emplace_back(entryOf(savedPlaceOf(match), id, id && list->selected == id));
      if (saved != nullptr) entry.notifications = choiceOf(*saved, entry.selected);
      if (isSuggestion) entry.isSuggestion = true;
      if (!match.otherName.empty()) entry.otherName = match.otherName;
    }
    return show(entries, true);
  }

  int add() {
    if (options_.here) return addHere();
    auto const wanted = parsePlace(options_.place);
    if (!wanted) return session_.fail(exitCode::kUsage, wanted.error());
    if (auto const* const coordinate = std::get_if<Coordinate>(&*wanted)) return addAt(*coordinate);
    auto const matches = found();
    if (!matches) {
      return failSearch(notFoundSentence(options_.place, matches.error(), texts().language()));
    }
    return save(savedPlaceOf(matches->front()));
  }

  int addAt(Coordinate const& coordinate) {
    SavedPlace place;
    place.id = Uuid::random();
    place.coordinate = coordinate;
    return save(std::move(place));
  }

  int save(SavedPlace place) {
    if (!options_.name.empty()) place.name = options_.name;
    auto const list = places_.change([&](PlaceList& changed) { return addPlace(changed, place); });
    // A search may have found another place of that name than was meant.
    if (list && !options_.json) {
      PlaceEntry const added = entryOf(list->places.back(), {}, false);
      session_.console.out(fullName(added) + "  " + whereabouts(added, clock_->now()) + "\n");
    }
    return finish(list);
  }

  Result<LocationFix, LocationError> locate() const {
    if (session_.location != nullptr) return session_.location->locate(kLocationTimeout, session_.stop);
    auto const desktop = desktopLocationSource(busesOfSession(session_.environment.program));
    return desktop->locate(kLocationTimeout, session_.stop);
  }

  int addHere() {
    auto const fix = locate();
    return fix ? addAt(fix->coordinate) : failSearch(fix.error().message);
  }

  int selectHere() {
    auto const fix = locate();
    if (!fix) return failSearch(fix.error().message);
    return finish(places_.change([&](PlaceList& list) { return selectCurrentLocation(list, *fix); }));
  }

  PlacesOptions const& options_;
  CommonOptions const& common_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  Places places_;
  std::optional<Texts> texts_;
};

}  // namespace

int runPlaces(CommandLine const& line, Session const& session) {
  return PlacesRun(line, session).run();
}

}  // namespace nimbara
