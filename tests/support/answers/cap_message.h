// Messages of the Common Alerting Protocol of a test's making.
#pragma once

#include <string>
#include <vector>

namespace nimbara::test {

struct CapBlock {
  std::string language = "en-GB";
  std::string event = "Moderate wind warning";
  std::string onset = "2026-11-21T06:00:00+00:00";
  std::string expires = "2026-11-22T06:00:00+00:00";
  std::string sender = "Weather Service of Testland";
  std::string headline = "Wind in Testland";
  std::string description = "Strong wind from the west.";
  std::string instruction = "Stay at home.";
  std::string level = "2; yellow; Moderate";
  std::string type = "1; Wind";
  std::string area = "Coast";
  std::string code = "DE001";
  std::string severity = "Moderate";
  std::string more;  ///< further elements of the block as they are

  std::string xml() const {
    return "<info>" + element("language", language) + element("event", event) +
           element("severity", severity) + element("onset", onset) + element("expires", expires) +
           element("senderName", sender) + element("headline", headline) +
           element("description", description) + element("instruction", instruction) +
           pair("parameter", "awareness_level", level) + pair("parameter", "awareness_type", type) + more +
           "<area>" + element("areaDesc", area) + pair("geocode", "EMMA_ID", code) + "</area></info>";
  }

  static std::string element(std::string const& name, std::string const& text) {
    return "<" + name + ">" + text + "</" + name + ">";
  }
  static std::string pair(std::string const& name, std::string const& key, std::string const& value) {
    return value.empty() ? "" : element(name, element("valueName", key) + element("value", value));
  }
};

std::string capMessage(std::vector<CapBlock> const& blocks, std::string const& more = {});

}  // namespace nimbara::test
