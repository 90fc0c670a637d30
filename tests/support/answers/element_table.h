// Tables of orbital elements as their source publishes them, with satellites made up here.
#pragma once

#include <string>

namespace nimbara::test {

inline constexpr char kElementHeading[] =
    "OBJECT_NAME,OBJECT_ID,EPOCH,MEAN_MOTION,ECCENTRICITY,INCLINATION,RA_OF_ASC_NODE,ARG_OF_PERICENTER,"
    "MEAN_ANOMALY,EPHEMERIS_TYPE,CLASSIFICATION_TYPE,NORAD_CAT_ID,ELEMENT_SET_NO,REV_AT_EPOCH,BSTAR,"
    "MEAN_MOTION_DOT,MEAN_MOTION_DDOT\r\n";

inline std::string elementRow(std::string const& number, std::string const& more = ".12E-3,.00001234,0") {
  return "TEST "
         "SAT,2026-001A,2026-11-20T12:00:00.000000,15.5,.0001234,51.6401,247.4627,130.536,325.0288,0,U," +
         number + ",999,12345," + more + "\r\n";
}

/// The same satellite as an object of a JSON list.
inline std::string elementObject(std::string const& number) {
  return R"({"OBJECT_NAME":"TEST SAT","OBJECT_ID":"2026-001A","EPOCH":"2026-11-20T12:00:00.000000",)"
         R"("MEAN_MOTION":15.5,"ECCENTRICITY":0.0001234,"INCLINATION":51.6401,"RA_OF_ASC_NODE":247.4627,)"
         R"("ARG_OF_PERICENTER":130.536,"MEAN_ANOMALY":325.0288,"EPHEMERIS_TYPE":0,"CLASSIFICATION_TYPE":"U",)"
         R"("NORAD_CAT_ID":)" +
         number +
         R"(,"ELEMENT_SET_NO":999,"REV_AT_EPOCH":12345,"BSTAR":0.00012,"MEAN_MOTION_DOT":1.234e-5,)"
         R"("MEAN_MOTION_DDOT":0})";
}

}  // namespace nimbara::test
