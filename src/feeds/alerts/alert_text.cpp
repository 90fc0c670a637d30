#include "feeds/alerts/alert_text.h"

#include "base/text/clean_text.h"

namespace nimbara {

namespace {

constexpr std::size_t kLongestTitle = 300;
constexpr std::size_t kLongestAddress = 2000;

void clean(std::string& text, std::size_t limit, TextLines lines) {
  text = cleanText(text, limit, lines);
}

void clean(std::optional<std::string>& text, std::size_t limit, TextLines lines) {
  if (text) clean(*text, limit, lines);
}

}  // namespace

void cleanTexts(std::vector<WeatherAlert>& alerts) {
  for (WeatherAlert& alert : alerts) {
    clean(alert.title, kLongestTitle, TextLines::one);
    clean(alert.message, kTextLimit, TextLines::many);
    clean(alert.description, kTextLimit, TextLines::many);
    clean(alert.instruction, kTextLimit, TextLines::many);
    clean(alert.source, kNameLimit, TextLines::one);
    clean(alert.areaDesc, kTextLimit, TextLines::one);
    clean(alert.link, kLongestAddress, TextLines::one);
    clean(alert.issuer, kNameLimit, TextLines::one);
    clean(alert.text, kTextLimit, TextLines::many);
    if (!alert.near) continue;
    for (NearArea& area : *alert.near) clean(area.area, kNameLimit, TextLines::one);
  }
}

}  // namespace nimbara
