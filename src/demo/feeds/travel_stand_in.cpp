#include "demo/feeds/travel_stand_in.h"

#include "base/json/json.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_draw.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

struct Country {
  std::string_view fips;
  std::string_view name;
  int usualLevel;
};

constexpr Country kCountries[] = {
    {"AF", "Afghanistan", 4},
    {"AG", "Algeria", 2},
    {"AR", "Argentina", 1},
    {"AS", "Australia", 1},
    {"AU", "Austria", 1},
    {"BF", "Bahamas", 2},
    {"BG", "Bangladesh", 3},
    {"BO", "Belarus", 4},
    {"BR", "Brazil", 2},
    {"BU", "Bulgaria", 1},
    {"BM", "Burma (Myanmar)", 4},
    {"CA", "Canada", 1},
    {"CD", "Chad", 3},
    {"CI", "Chile", 2},
    {"CH", "China", 2},
    {"CO", "Colombia", 3},
    {"CG", "Democratic Republic of the Congo", 4},
    {"IV", "Cote d'Ivoire", 2},
    {"HR", "Croatia", 1},
    {"EZ", "Czech Republic", 1},
    {"DA", "Denmark", 2},
    {"EG", "Egypt", 2},
    {"ES", "El Salvador", 1},
    {"EN", "Estonia", 1},
    {"FR", "France", 2},
    {"GA", "The Gambia", 1},
    {"GG", "Georgia", 1},
    {"GM", "Germany", 2},
    {"GH", "Ghana", 2},
    {"GR", "Greece", 1},
    {"HA", "Haiti", 4},
    {"HO", "Honduras", 3},
    {"IC", "Iceland", 1},
    {"IN", "India", 2},
    {"ID", "Indonesia", 2},
    {"IR", "Iran", 4},
    {"IZ", "Iraq", 4},
    {"EI", "Ireland", 1},
    {"IS", "Israel", 3},
    {"IT", "Italy", 2},
    {"JM", "Jamaica", 2},
    {"JA", "Japan", 1},
    {"KS", "South Korea", 1},
    {"KN", "North Korea", 4},
    {"LE", "Lebanon", 4},
    {"LS", "Liechtenstein", 1},
    {"MX", "Mexico", 2},
    {"MO", "Morocco", 2},
    {"NL", "Netherlands", 2},
    {"NG", "Niger", 4},
    {"NI", "Nigeria", 3},
    {"PA", "Paraguay", 1},
    {"PM", "Panama", 2},
    {"PO", "Portugal", 1},
    {"RS", "Russia", 4},
    {"SF", "South Africa", 2},
    {"SP", "Spain", 2},
    {"SU", "Sudan", 4},
    {"SW", "Sweden", 2},
    {"SZ", "Switzerland", 1},
    {"UP", "Ukraine", 4},
    {"UK", "United Kingdom", 2},
    {"VM", "Vietnam", 1},
};

constexpr std::string_view kAdvice[] = {"Exercise Normal Precautions", "Exercise Increased Caution",
                                        "Reconsider Travel", "Do Not Travel"};

enum Stream : std::uint64_t { kChange = 131, kDay };

/// In one month of forty a country stands a level above its usual one.
int levelOf(Country const& country, std::int64_t month) {
  std::int64_t const index = month * 1000 + (&country - std::begin(kCountries));
  return std::min(4, country.usualLevel + (demoDraw(kChange, index) < 0.025 ? 1 : 0));
}

void writeAdvisory(JsonWriter& json, Country const& country, Instant now) {
  using std::chrono::days;
  std::int64_t const today = std::chrono::floor<days>(now).time_since_epoch().count();
  int const level = levelOf(country, today / 30);
  std::string const name(country.name);
  std::string const advice(kAdvice[level - 1]);
  auto const age = 1 + static_cast<std::int64_t>(demoDraw(kDay, &country - std::begin(kCountries)) * 29);
  Instant const published = std::chrono::sys_days(days(today / 30 * 30 - age)) + std::chrono::hours(5);
  std::string const title = name + " - Level " + std::to_string(level) + ": " + advice;
  json.beginObject();
  json.member("Title", title);
  json.member("Link", "https://travel.state.gov/demo/" + std::string(country.fips) + ".html");
  json.member("Category", std::vector<std::string>{std::string(country.fips)});
  json.member("Summary", "<p><b>" + advice + "</b> in " + name +
                             ".&nbsp;This text is made up.</p><ul><li>Read the country&rsquo;s "
                             "page.</li><li>Enroll &amp; stay informed.</li></ul>");
  json.member("id", "https://travel.state.gov/demo/" + std::string(country.fips));
  json.member("Published", published);
  json.member("Updated", published + std::chrono::hours(24));
  json.endObject();
}

}  // namespace

DemoAnswer travelAdvisories(DemoRequest const& request, Instant now) {
  if (request.header("User-Agent").empty()) return {200, "[]", {}};
  JsonWriter json;
  json.beginList();
  for (Country const& country : kCountries) {
    json.separate();
    writeAdvisory(json, country, now);
  }
  json.endList();
  return conditionalAnswer(request, json.take(), 3600);
}

}  // namespace nimbara
