#include "demo/feeds/warnings/nws_stand_in.h"

#include "base/json/json.h"
#include "base/sha256.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_weather.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>
#include <vector>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr hours kBack{48};
constexpr hours kAhead{24};
constexpr hours kLead{12};
constexpr hours kUpdateEvery{3};
constexpr hours kMessageLife{4};
constexpr minutes kOldIsListed{20};
constexpr minutes kCancelIsListed{30};

constexpr std::string_view kTerritory[] = {"US", "PR", "VI", "GU", "AS", "MP", "FM", "MH", "PW"};

struct Hazard {
  std::string_view event;
  std::string_view severity;
  std::string_view instruction;
  bool (*holds)(DemoWeather const&);
};

constexpr Hazard kHazards[] = {
    {"Severe Thunderstorm Warning", "Severe", "Go indoors and stay away from windows.",
     [](DemoWeather const& w) { return w.weatherCode >= 96; }},
    {"High Wind Warning", "Severe", "Stay away from trees and secure loose objects.",
     [](DemoWeather const& w) { return w.windGusts >= 93; }},
    {"Wind Advisory", "Moderate", "Secure loose objects; take care when driving.",
     [](DemoWeather const& w) { return w.windGusts >= 70 && w.windGusts < 93; }},
    {"Flood Watch", "Severe", "Be ready to move to higher ground.",
     [](DemoWeather const& w) { return w.precipitation >= 6 && w.snowfall == 0; }},
    {"Winter Weather Advisory", "Moderate", "Slow down and keep your distance on the road.",
     [](DemoWeather const& w) { return w.snowfall >= 0.7; }},
    {"Dense Fog Advisory", "Minor", "Use your headlights and leave plenty of distance.",
     [](DemoWeather const& w) { return w.visibility < 400; }},
    {"Heat Advisory", "Moderate", "Drink plenty of water and stay out of the sun.",
     [](DemoWeather const& w) { return w.apparentTemperature >= 38; }},
    {"Cold Weather Advisory", "Moderate", "Dress in layers and cover exposed skin.",
     [](DemoWeather const& w) { return w.apparentTemperature <= -25; }},
};

/// Hours in a row in which a hazard holds.
struct Event {
  Hazard const* hazard = nullptr;
  Instant begin;
  Instant end;
};

class Weather {
 public:
  Weather(Coordinate place, Instant now) : first_(std::chrono::floor<hours>(now) - kBack) {
    for (hours at{0}; at < kBack + kAhead; ++at) hours_.push_back(demoWeather(place, first_ + at));
  }

  /// Gaps of less than three hours do not part an event.
  std::vector<Event> events(Hazard const& hazard) const {
    std::vector<Event> found;
    for (std::size_t i = 0; i < hours_.size(); ++i) {
      if (!hazard.holds(hours_[i])) continue;
      Instant const begin = first_ + hours(i);
      if (found.empty() || begin - found.back().end > hours(2)) found.push_back({&hazard, begin, begin});
      found.back().end = begin + hours(1);
    }
    return found;
  }

 private:
  Instant first_;
  std::vector<DemoWeather> hours_;
};

/// One of the messages that tell of an event; the later ones refer to the earlier.
struct Message {
  Hazard const* hazard = nullptr;
  std::string_view type = "Alert";
  std::string_view status = "Actual";
  std::string chain;        ///< the same for all messages of an event
  std::int64_t number = 0;  ///< in the chain, from 0
  Instant firstSent;
  Instant begin;
  Instant end;

  Instant sentOf(std::int64_t which) const { return firstSent + which * kUpdateEvery; }
  std::string identifierOf(std::int64_t which) const {
    return "urn:oid:2.49.0.1.840.0." + sha256Hex(chain).substr(0, 40) + "." + std::to_string(which + 1) +
           ".1";
  }
};

std::string localText(Instant moment) {
  std::string const text = formatIso8601(moment);
  return text.substr(0, text.size() - 1) + "+00:00";
}

/// As the service's forecasters write it: "November 23 at 12:00AM UTC".
std::string spokenText(Instant moment) {
  constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
  auto const minute = std::chrono::floor<std::chrono::minutes>(moment);
  auto const day = std::chrono::floor<std::chrono::days>(minute);
  std::chrono::year_month_day const date(std::chrono::sys_days(day.time_since_epoch()));
  std::chrono::hh_mm_ss const clock(minute - day);
  auto const hour = clock.hours().count();
  auto const minutes = std::to_string(clock.minutes().count());
  return std::string(kMonths.at(static_cast<unsigned>(date.month()) - 1)) + " " +
         std::to_string(static_cast<unsigned>(date.day())) + " at " +
         std::to_string(hour % 12 == 0 ? 12 : hour % 12) + ":" + (minutes.size() == 1 ? "0" : "") + minutes +
         (hour < 12 ? "AM" : "PM") + " UTC";
}

class MessageWriter {
 public:
  MessageWriter(JsonWriter& json, Coordinate place) : json_(json), place_(place) {}

  void write(Message const& message) {
    json_.separate();
    json_.beginObject();
    json_.member("id", "https://api.weather.gov/alerts/" + message.identifierOf(message.number));
    json_.member("type", "Feature");
    writeGeometry(*message.hazard);
    json_.key("properties");
    writeProperties(message);
    json_.endObject();
  }

 private:
  /// Only short-lived warnings have an outline of their own.
  void writeGeometry(Hazard const& hazard) {
    json_.key("geometry");
    if (!hazard.event.starts_with("Severe Thunderstorm")) return json_.null();
    constexpr double kReach = 0.3;
    std::vector<std::vector<double>> ring;
    for (auto const& [north, east] : {std::pair{-1, -1}, {-1, 1}, {1, 1}, {1, -1}, {-1, -1}}) {
      ring.push_back({place_.longitude + kReach * east, place_.latitude + kReach * north});
    }
    json_.beginObject();
    json_.member("type", "Polygon");
    json_.member("coordinates", std::vector{ring});
    json_.endObject();
  }

  void writeProperties(Message const& message) {
    Hazard const& hazard = *message.hazard;
    std::string const event(hazard.event);
    json_.beginObject();
    json_.member("id", message.identifierOf(message.number));
    json_.member("areaDesc", areaText());
    writeReferences(message);
    writeTimes(message);
    json_.member("status", message.status);
    json_.member("messageType", message.type);
    json_.member("category", "Met");
    json_.member("severity", hazard.severity);
    json_.member("certainty", "Likely");
    json_.member("urgency", "Expected");
    json_.member("event", event);
    json_.member("sender", "demo@nimbara.example");
    json_.member("senderName", "NWS Demo Office");
    json_.member("headline", event + " until " + spokenText(message.end) + " by NWS Demo Office");
    json_.member("description", "* WHAT..." + event + ".\n\n* WHERE..." + areaText() + ".\n\n* WHEN...From " +
                                    spokenText(message.begin) + " to " + spokenText(message.end) + ".");
    json_.member("instruction", hazard.instruction);
    json_.member("response", "Prepare");
    json_.endObject();
  }

  void writeReferences(Message const& message) {
    json_.key("references");
    json_.beginList();
    for (std::int64_t older = 0; older < message.number; ++older) {
      json_.separate();
      json_.beginObject();
      json_.member("@id", "https://api.weather.gov/alerts/" + message.identifierOf(older));
      json_.member("identifier", message.identifierOf(older));
      json_.member("sender", "demo@nimbara.example");
      json_.member("sent", localText(message.sentOf(older)));
      json_.endObject();
    }
    json_.endList();
  }

  void writeTimes(Message const& message) {
    Instant const sent = message.sentOf(message.number);
    json_.member("sent", localText(sent));
    json_.member("effective", localText(sent));
    json_.member("onset", localText(message.begin));
    json_.member("expires", localText(sent + kMessageLife));
    json_.member("ends", localText(message.end));
  }

  std::string areaText() const {
    PlaceFacts const facts = describePlace(place_);
    return facts.regionNames.empty() ? "Coastal waters" : std::string(facts.regionNames.front());
  }

  JsonWriter& json_;
  Coordinate place_;
};

/// The present message of an event, the one before it as long as it is still listed, or the cancellation.
std::vector<Message> messagesOf(Event const& event, Coordinate place, Instant now) {
  Message message;
  message.hazard = event.hazard;
  message.chain = std::string(event.hazard->event) + formatIso8601(event.begin) +
                  fixedDecimal(place.latitude, 2) + fixedDecimal(place.longitude, 2);
  message.firstSent = event.begin - kLead;
  message.begin = event.begin;
  message.end = event.end;
  if (now < message.firstSent || now >= event.end + kCancelIsListed) return {};
  message.number = (std::min(now, event.end) - message.firstSent) / kUpdateEvery;
  if (message.number > 0) message.type = "Update";
  if (now >= event.end) {
    ++message.number;
    message.type = "Cancel";
  }
  std::vector<Message> messages{message};
  if (message.type == "Update" && now - message.sentOf(message.number) < kOldIsListed) {
    Message older = message;
    older.type = --older.number > 0 ? "Update" : "Alert";
    messages.push_back(older);
  }
  return messages;
}

/// As they are sent every month, with the highest severity of all.
Message testMessage(Instant now) {
  static constexpr Hazard kTest{"Tsunami Warning", "Extreme", "This is a test. No action is needed.",
                                nullptr};
  Instant const day = std::chrono::floor<std::chrono::days>(now);
  Message message;
  message.hazard = &kTest;
  message.status = "Test";
  message.chain = "test" + formatIso8601(day);
  message.firstSent = day;
  message.begin = day;
  message.end = day + std::chrono::days(1);
  return message;
}

std::string listBody(Coordinate place, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.member("@context", std::vector<std::string>{"https://geojson.org/geojson-ld/geojson-context.jsonld"});
  json.member("type", "FeatureCollection");
  json.key("features");
  json.beginList();
  MessageWriter writer(json, place);
  Weather const weather(place, now);
  for (Hazard const& hazard : kHazards) {
    for (Event const& event : weather.events(hazard)) {
      for (Message const& message : messagesOf(event, place, now)) writer.write(message);
    }
  }
  writer.write(testMessage(now));
  json.endList();
  json.member("title", "Current watches, warnings, and advisories");
  json.endObject();
  return json.take();
}

DemoAnswer outOfBounds(std::string const& point) {
  JsonWriter json;
  json.beginObject();
  json.member("title", "Invalid Parameter");
  json.member("type", "https://api.weather.gov/problems/InvalidParameter");
  json.member("status", 400);
  json.member("detail", "Parameter \"point\" is invalid: out of bounds (" + point + ")");
  json.endObject();
  return {400, json.take(), {}};
}

std::optional<Coordinate> pointOf(std::string_view text) {
  auto const comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  return demoCoordinate(text.substr(0, comma), text.substr(comma + 1));
}

bool isInTerritory(Coordinate place) {
  auto const code = describePlace(place).countryCode;
  return code.empty() || std::ranges::count(kTerritory, code) > 0;
}

}  // namespace

DemoAnswer nwsActiveAlerts(DemoRequest const& request, Instant now) {
  if (request.header("User-Agent").empty()) return {403, "<html><h1>Access Denied</h1></html>", {}};
  auto const place = pointOf(request.query("point"));
  if (!place || !isInTerritory(*place)) return outOfBounds(request.query("point"));
  return conditionalAnswer(request, listBody(request.answeredPlace(*place), now), 30);
}

}  // namespace nimbara
