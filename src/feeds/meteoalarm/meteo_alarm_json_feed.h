// MeteoAlarm's second feed of a country: the same warnings as whole messages of the Common Alerting Protocol,
// written as JSON. They become entries as the Atom feed has them, so that one set of rules selects and merges
// both. Pure; any bytes may be given.
#pragma once

#include "base/result.h"
#include "feeds/cap/cap_store.h"
#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct MeteoAlarmJsonFeed {
  std::vector<RawEntry> entries;
  CapDocuments messages;  ///< by their addresses, and by their identifiers
};

/// One entry for each area of each block, in the order of the list. Of the languages of an event it is the
/// English block that counts, as in the Atom feed, else those of the first language; the others remain in the
/// message. A message to which a later one of the list refers is left out. `documents` begins the addresses
/// of the messages' own documents, and ends in "/". The error says why the body is no such feed; a single
/// message that cannot be read is such a reason.
Result<MeteoAlarmJsonFeed, std::string> parseMeteoAlarmJson(std::string_view body,
                                                            std::string_view documents);

}  // namespace nimbara
