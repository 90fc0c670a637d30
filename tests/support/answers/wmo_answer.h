// Answers of the WMO Severe Weather Information Centre of a test's making.
#pragma once

#include <string>
#include <vector>

namespace nimbara::test {

/// A warning as the centre lists it. Members are written as they are; empty ones become null.
struct WmoFeature {
  std::string capurl = "kz-kazhydromet-en/2026/11/22/08/00/00-0123456789abcdef.xml";
  std::string rlink;
  std::string identifier = "2.49.0.0.398.0-20261122";
  std::string event = "Strong wind";
  std::string sent = "2026-11-22T08:00:00Z";
  std::string expires = "2026-11-23T08:00:00Z";
  std::string s = "3";
  std::string geometry = R"({"type":"Polygon","coordinates":[[[71,51],[72,51],[72,52],[71,51]]]})";
  std::string more;  ///< further members of the properties, each followed by a comma

  std::string json() const {
    return R"({"type":"Feature","id":"layer.fid--7463f54d_1a0121513f5_-1f9d","geometry":)" +
           orNull(geometry) + R"(,"properties":{)" + more + R"("capurl":)" + text(capurl) + R"(,"rlink":)" +
           text(rlink) + R"(,"identifier":)" + text(identifier) + R"(,"sent":)" + text(sent) +
           R"(,"event":)" + text(event) + R"(,"s":)" + orNull(s) + R"(,"u":3,"c":3,"expires":)" +
           text(expires) + R"(,"row_type":"POLYGON"}})";
  }

  static std::string orNull(std::string const& value) { return value.empty() ? "null" : value; }
  static std::string text(std::string const& value) { return value.empty() ? "null" : '"' + value + '"'; }
};

inline std::string wmoAnswer(std::vector<WmoFeature> const& features, std::string const& more = {}) {
  std::string list;
  for (WmoFeature const& feature : features) list += (list.empty() ? "" : ",") + feature.json();
  return R"({"type":"FeatureCollection",)" + more + R"("features":[)" + list + "]}";
}

}  // namespace nimbara::test
