// MeteoAlarm feeds of a test's making, in the service's own shape.
#pragma once

#include <string>
#include <vector>

namespace nimbara::test {

struct AtomEntry {
  std::string title = "Yellow Wind Warning issued for Testland - Coast";
  std::string event = "Moderate wind warning";
  std::string severity = "Moderate";
  std::string area = "Coast";
  std::string onset = "2026-11-21T06:00:00+00:00";
  std::string expires = "2026-11-22T06:00:00+00:00";
  std::string more;  ///< further elements as they are

  std::string xml() const {
    return "<entry><author><name>info@weather.example</name></author>" + element("areaDesc", area) +
           element("event", event) + element("expires", expires) + more + element("onset", onset) +
           element("severity", severity) + "<id>https://feeds.example/1?a=0&amp;b=0</id><title>" + title +
           "</title></entry>";
  }

  static std::string element(std::string const& name, std::string const& text) {
    return text.empty() ? "" : "<cap:" + name + ">" + text + "</cap:" + name + ">";
  }
  static std::string code(std::string const& registry, std::string const& code) {
    return "<cap:geocode><valueName>" + registry + "</valueName><value>" + code + "</value></cap:geocode>";
  }
};

std::string atomFeed(std::vector<AtomEntry> const& entries);

}  // namespace nimbara::test
