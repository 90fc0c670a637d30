// Messages of the Common Alerting Protocol of a test's making as MeteoAlarm's JSON feeds have them.
#pragma once

#include "support/answers/cap_message.h"

#include <string>
#include <utility>
#include <vector>

namespace nimbara::test {

struct JsonMessage {
  std::string identifier = "2.49.0.0.1";
  std::string sent = "2026-11-21T05:30:00+00:00";
  std::string type = "Alert";
  std::string status = "Actual";
  std::string references;
  std::string name = "1";  ///< that ends the address of its document
  std::vector<CapBlock> blocks = {{}};

  std::string json() const {
    std::string infos;
    for (CapBlock const& block : blocks) infos += (infos.empty() ? "" : ",") + jsonOf(block);
    return R"({"uuid":")" + name + R"(","alert":{"identifier":")" + identifier + R"(","sent":")" + sent +
           R"(","status":")" + status + R"(","msgType":")" + type + R"(","references":")" + references +
           R"(","info":[)" + infos + "]}}";
  }

  static std::string jsonOf(CapBlock const& block) {
    std::string const parameters =
        pair("awareness_level", block.level) + "," + pair("awareness_type", block.type);
    return "{" + member("language", block.language) + member("event", block.event) +
           member("severity", block.severity) + member("onset", block.onset) +
           member("expires", block.expires) + member("senderName", block.sender) +
           member("headline", block.headline) + member("description", block.description) +
           member("instruction", block.instruction) + R"("parameter":[)" + parameters +
           R"(],"area":[{"areaDesc":")" + block.area + R"(","geocode":[)" + pair("WARNCELLID", "1") + "," +
           pair("EMMA_ID", block.code) + "]" + block.more + "}]}";
  }
  static std::string member(std::string const& name, std::string const& text) {
    return "\"" + name + "\":\"" + text + "\",";
  }
  static std::string pair(std::string const& name, std::string const& value) {
    return R"({"valueName":")" + name + R"(","value":")" + value + "\"}";
  }
};

std::string jsonFeed(std::vector<JsonMessage> const& messages);

}  // namespace nimbara::test
