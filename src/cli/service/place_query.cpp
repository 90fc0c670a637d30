#include "cli/service/place_query.h"

#include "app/places/place_search.h"
#include "base/text/search_text.h"
#include "base/text/text.h"
#include "cli/service/service_records.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>

namespace nimbara {

namespace {

constexpr std::size_t kMostHits = 6;
/// Shorter texts without a word for the weather mean something else.
constexpr std::size_t kShortestName = 2;

/// The weather in the program's languages, as names are compared.
constexpr auto kWeatherWords = std::to_array<std::string_view>(
    {"weather",      "forecast", "wetter", "vorhersage",       "meteo",  "temps",
     "previsions",   "tiempo",   "clima",  "pronostico",       "tempo",  "previsioni",
     "meteorologia", "previsao", "weer",   "weersverwachting", "pogoda", "prognoza",
     "天気",         "天気予報", "天气",   "天气预报"});
/// Scripts without blanks have them at the name itself; the longer first.
constexpr auto kJoinedWords = std::to_array<std::string_view>({"天気予報", "天气预报", "天気", "天气"});
constexpr auto kParticles = std::to_array<std::string_view>({"の", "的"});
/// Between the word and the place: "weather in Lisbon", "Wetter für Bonn", "pogoda w Krakowie".
constexpr auto kJoints = std::to_array<std::string_view>(
    {"in", "at", "for", "fur", "a", "en", "de", "em", "para", "per", "pour", "voor", "w", "dla", "do"});

bool isAmong(std::span<std::string_view const> words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  while (!(text = trimmed(text)).empty()) {
    auto const end = std::min(text.find(' '), text.size());
    words.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return words;
}

/// "東京の天気" is "東京".
bool cutJoinedWord(std::string& word) {
  for (std::string_view const joined : kJoinedWords) {
    if (word.starts_with(joined)) {
      word.erase(0, joined.size());
    } else if (word.ends_with(joined)) {
      word.resize(word.size() - joined.size());
    } else {
      continue;
    }
    for (std::string_view const particle : kParticles) {
      if (word.ends_with(particle)) word.resize(word.size() - particle.size());
      if (word.starts_with(particle)) word.erase(0, particle.size());
    }
    return true;
  }
  return false;
}

bool isWeather(std::string const& word) {
  return isAmong(kWeatherWords, searchFolded(word));
}

/// A city that is not saved: what is known of it is where it lies.
SearchHit hitOf(FoundPlace const& found, double relevance) {
  SearchHit hit{coordinateText(found.coordinate), foundName(found), found.region, "io.github.nimbara.Nimbara",
                relevance};
  if (!found.country.empty()) hit.description += (hit.description.empty() ? "" : ", ") + found.country;
  return hit;
}

/// A city that is saved, be it with a coordinate a little off the gazetteer's.
bool isSame(Place const& place, FoundPlace const& found) {
  constexpr double kWithinCityKm = 5;
  double const km = haversineKm(place.coordinate, found.coordinate);
  return km < kSamePlaceKm || (km < kWithinCityKm && searchFolded(place.name) == searchFolded(found.name));
}

/// Finds each place once.
class Hits {
 public:
  Hits(ServiceSnapshot const& snapshot, Instant now) : snapshot_(snapshot), now_(now) {}

  void add(ServicePlace const& place, double relevance) {
    SearchHit hit = searchHit(place, snapshot_.wording, now_, relevance);
    if (isNew(hit.id)) hits_.push_back(std::move(hit));
  }
  void add(FoundPlace const& found, double relevance) {
    auto const known = std::ranges::find_if(
        snapshot_.places, [&](ServicePlace const& place) { return isSame(place.place, found); });
    if (known != snapshot_.places.end()) return add(*known, relevance);
    SearchHit hit = hitOf(found, relevance);
    if (isNew(hit.id)) hits_.push_back(std::move(hit));
  }
  std::vector<SearchHit> take() {
    std::ranges::stable_sort(hits_, std::ranges::greater(), &SearchHit::relevance);
    if (hits_.size() > kMostHits) hits_.resize(kMostHits);
    return std::move(hits_);
  }

 private:
  bool isNew(std::string const& id) const {
    return std::ranges::find(hits_, id, &SearchHit::id) == hits_.end();
  }

  ServiceSnapshot const& snapshot_;
  Instant now_;
  std::vector<SearchHit> hits_;
};

/// 1 for the very name, less for its beginning, 0 for another one.
double nameRelevance(std::string const& name, std::string const& folded) {
  std::string const own = searchFolded(name);
  if (own == folded) return 1;
  return own.starts_with(folded) ? 0.9 : 0;
}

/// A text without a word for the weather must be the city's whole name.
bool isWholeName(FoundPlace const& found, std::string const& folded) {
  return searchFolded(found.name) == folded || searchFolded(found.otherName) == folded;
}

}  // namespace

PlaceQuery placeQuery(std::string_view text) {
  PlaceQuery query;
  std::vector<std::string> words = wordsOf(text);
  if (!words.empty() && isWeather(words.front())) {
    query.asksWeather = true;
    words.erase(words.begin());
    if (words.size() > 1 && isAmong(kJoints, searchFolded(words.front()))) words.erase(words.begin());
  } else if (words.size() > 1 && isWeather(words.back())) {
    query.asksWeather = true;
    words.pop_back();
  } else if (words.size() == 1) {
    query.asksWeather = cutJoinedWord(words.front());
  }
  for (std::string const& word : words) query.place += (query.place.empty() ? "" : " ") + word;
  return query;
}

std::vector<SearchHit> searchPlaces(std::string_view text, ServiceSnapshot const& snapshot, Instant now) {
  PlaceQuery const query = placeQuery(text);
  std::string const folded = searchFolded(query.place);
  Hits hits(snapshot, now);
  if (folded.empty()) {
    if (!query.asksWeather || !trimmed(query.place).empty()) return {};
    for (ServicePlace const& place : snapshot.places) hits.add(place, place.isSelected ? 1 : 0.8);
    return hits.take();
  }
  if (!query.asksWeather && query.place.size() < kShortestName) return {};
  for (ServicePlace const& place : snapshot.places) {
    double const relevance = nameRelevance(place.place.name, folded);
    if (relevance > 0) hits.add(place, relevance);
  }
  double relevance = query.asksWeather ? 0.8 : 0.5;
  for (FoundPlace const& found : searchOffline(query.place, snapshot.wording.texts->language())) {
    if (!query.asksWeather && !isWholeName(found, folded)) continue;
    hits.add(found, relevance);
    if (!query.asksWeather) break;  // of all cities of that name the largest is meant
    relevance *= 0.9;
  }
  return hits.take();
}

std::optional<SearchHit> foundPlace(std::string const& id, ServiceSnapshot const& snapshot, Instant now) {
  if (ServicePlace const* const place = snapshot.find(id)) {
    return searchHit(*place, snapshot.wording, now, 1);
  }
  auto const parsed = parsePlace(id);
  if (!parsed || !std::holds_alternative<Coordinate>(*parsed)) return std::nullopt;
  auto const found = searchOffline(id, snapshot.wording.texts->language());
  return found.empty() ? std::nullopt : std::optional(hitOf(found.front(), 1));
}

}  // namespace nimbara
