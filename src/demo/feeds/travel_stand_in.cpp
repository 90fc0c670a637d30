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
  std::string_view iso;
  std::string_view name;
  int usualLevel;
};

constexpr Country kCountries[] = {
    {"AF", "AF", "Afghanistan", 4},
    {"AG", "DZ", "Algeria", 2},
    {"AR", "AR", "Argentina", 1},
    {"AS", "AU", "Australia", 1},
    {"AU", "AT", "Austria", 1},
    {"BF", "BS", "Bahamas", 2},
    {"BG", "BD", "Bangladesh", 3},
    {"BO", "BY", "Belarus", 4},
    {"BR", "BR", "Brazil", 2},
    {"BU", "BG", "Bulgaria", 1},
    {"BM", "MM", "Burma (Myanmar)", 4},
    {"CA", "CA", "Canada", 1},
    {"CD", "TD", "Chad", 3},
    {"CI", "CL", "Chile", 2},
    {"CH", "CN", "China", 2},
    {"CO", "CO", "Colombia", 3},
    {"CG", "CD", "Democratic Republic of the Congo", 4},
    {"IV", "CI", "Cote d'Ivoire", 2},
    {"HR", "HR", "Croatia", 1},
    {"EZ", "CZ", "Czech Republic", 1},
    {"DA", "DK", "Denmark", 2},
    {"EG", "EG", "Egypt", 2},
    {"ES", "SV", "El Salvador", 1},
    {"EN", "EE", "Estonia", 1},
    {"FR", "FR", "France", 2},
    {"GA", "GM", "The Gambia", 1},
    {"GG", "GE", "Georgia", 1},
    {"GM", "DE", "Germany", 2},
    {"GH", "GH", "Ghana", 2},
    {"GR", "GR", "Greece", 1},
    {"HA", "HT", "Haiti", 4},
    {"HO", "HN", "Honduras", 3},
    {"IC", "IS", "Iceland", 1},
    {"IN", "IN", "India", 2},
    {"ID", "ID", "Indonesia", 2},
    {"IR", "IR", "Iran", 4},
    {"IZ", "IQ", "Iraq", 4},
    {"EI", "IE", "Ireland", 1},
    {"IS", "IL", "Israel", 3},
    {"IT", "IT", "Italy", 2},
    {"JM", "JM", "Jamaica", 2},
    {"JA", "JP", "Japan", 1},
    {"KS", "KR", "South Korea", 1},
    {"KN", "KP", "North Korea", 4},
    {"LE", "LB", "Lebanon", 4},
    {"LS", "LI", "Liechtenstein", 1},
    {"MX", "MX", "Mexico", 2},
    {"MO", "MA", "Morocco", 2},
    {"NL", "NL", "Netherlands", 2},
    {"NG", "NE", "Niger", 4},
    {"NI", "NG", "Nigeria", 3},
    {"PA", "PY", "Paraguay", 1},
    {"PM", "PA", "Panama", 2},
    {"PO", "PT", "Portugal", 1},
    {"RS", "RU", "Russia", 4},
    {"SF", "ZA", "South Africa", 2},
    {"SP", "ES", "Spain", 2},
    {"SU", "SD", "Sudan", 4},
    {"SW", "SE", "Sweden", 2},
    {"SZ", "CH", "Switzerland", 1},
    {"UP", "UA", "Ukraine", 4},
    {"UK", "GB", "United Kingdom", 2},
    {"VM", "VN", "Vietnam", 1},
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

int levelAt(Country const& country, Instant now) {
  return levelOf(country, std::chrono::floor<std::chrono::days>(now).time_since_epoch().count() / 30);
}

/// "el-salvador".
std::string slugOf(Country const& country) {
  std::string slug;
  for (char const c : country.name) {
    if (c == ' ') slug += '-';
    if (c >= 'A' && c <= 'Z') slug += static_cast<char>(c - 'A' + 'a');
    if (c >= 'a' && c <= 'z') slug += c;
  }
  return slug;
}

constexpr std::string_view kCanadianAdvice[] = {"Take normal security precautions",
                                                "Exercise a high degree of caution",
                                                "Avoid non-essential travel", "Avoid all travel"};

constexpr std::string_view kBritishStatus[] = {"", "avoid_all_but_essential_travel_to_parts",
                                               "avoid_all_but_essential_travel_to_whole_country",
                                               "avoid_all_travel_to_whole_country"};

constexpr std::string_view kBritishFolder = "/foreign-travel-advice";

void writeCanadian(JsonWriter& json, Country const& country, Instant now) {
  int const level = levelAt(country, now);
  json.key(std::string(country.iso));
  json.beginObject();
  json.member("country-iso", std::string(country.iso));
  json.member("advisory-state", level - 1);
  json.member("has-regional-advisory", level == 2 ? 1 : 0);
  json.key("date-published");
  json.beginObject();
  json.member("timestamp", (now - std::chrono::days(level)).time_since_epoch().count() / 1000);
  json.endObject();
  json.key("eng");
  json.beginObject();
  json.member("name", std::string(country.name));
  json.member("url-slug", slugOf(country));
  json.member("advisory-text", std::string(kCanadianAdvice[level - 1]));
  json.member("recent-updates", std::string("<p>A made-up update.</p>"));
  json.endObject();
  json.endObject();
}

void writeGerman(JsonWriter& json, Country const& country, Instant now) {
  int const level = levelAt(country, now);
  json.key(std::to_string(200'000 + (&country - std::begin(kCountries))));
  json.beginObject();
  json.member("lastModified", (now - std::chrono::days(level)).time_since_epoch().count());
  json.member("title", std::string(country.name) + ": Reise- und Sicherheitshinweise");
  json.member("countryCode", std::string(country.iso));
  json.member("warning", level == 4);
  json.member("partialWarning", level == 3);
  json.member("situationWarning", false);
  json.member("situationPartWarning", level == 2);
  json.endObject();
}

DemoAnswer britishList(DemoRequest const& request) {
  JsonWriter json;
  json.beginObject();
  json.key("links");
  json.beginObject();
  json.key("children");
  json.beginList();
  for (Country const& country : kCountries) {
    json.separate();
    json.beginObject();
    json.member("base_path", std::string(kBritishFolder) + "/" + slugOf(country));
    json.member("title", std::string(country.name));
    json.endObject();
  }
  json.endList();
  json.endObject();
  json.endObject();
  return conditionalAnswer(request, json.take(), 3600);
}

DemoAnswer britishPage(DemoRequest const& request, Country const& country, Instant now) {
  int const level = levelAt(country, now);
  JsonWriter json;
  json.beginObject();
  json.member("base_path", std::string(kBritishFolder) + "/" + slugOf(country));
  json.member("title", std::string(country.name) + " travel advice");
  json.member("public_updated_at", now - std::chrono::days(level));
  json.key("details");
  json.beginObject();
  std::vector<std::string> status;
  if (level > 1) status.emplace_back(kBritishStatus[level - 1]);
  json.member("alert_status", status);
  json.member("change_description", std::string("A made-up update."));
  json.key("country");
  json.beginObject();
  json.member("name", std::string(country.name));
  json.endObject();
  json.endObject();
  json.endObject();
  return conditionalAnswer(request, json.take(), 3600);
}

}  // namespace

DemoAnswer canadianAdvisories(DemoRequest const& request, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.key("data");
  json.beginObject();
  for (Country const& country : kCountries) writeCanadian(json, country, now);
  json.endObject();
  json.endObject();
  return conditionalAnswer(request, json.take(), 3600);
}

DemoAnswer germanAdvisories(DemoRequest const& request, Instant now) {
  JsonWriter json;
  json.beginObject();
  json.key("response");
  json.beginObject();
  json.member("lastModified", now.time_since_epoch().count());
  for (Country const& country : kCountries) writeGerman(json, country, now);
  json.endObject();
  json.endObject();
  return conditionalAnswer(request, json.take(), 3600);
}

DemoAnswer britishAdvisories(DemoRequest const& request, Instant now) {
  if (!request.path.contains(std::string(kBritishFolder) + "/")) return britishList(request);
  std::string const slug = request.path.substr(request.path.rfind('/') + 1);
  auto const* const country = std::ranges::find(kCountries, slug, slugOf);
  if (country == std::end(kCountries)) return {404, "{}", {}};
  return britishPage(request, *country, now);
}

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
