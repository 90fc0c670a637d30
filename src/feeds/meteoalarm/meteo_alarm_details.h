// What the document of an entry says in full of the entry's warning. Pure functions.
#pragma once

#include "feeds/awareness/meteo_alarm_type.h"
#include "feeds/cap/cap_alert.h"
#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Texts to the letter; empty where the document has none.
struct WarningDetails {
  std::string text;  ///< the description, else the headline
  std::string instruction;
  std::string language;  ///< of the text
  std::string issuer;    ///< the national service's name
  std::string colour;    ///< of the awareness level: "yellow"
  std::optional<MeteoAlarmType> type;
  std::optional<Instant> sent;
  std::string sender = {};  ///< of the document, as its references
  std::vector<CapReference> references = {};

  bool operator==(WarningDetails const&) const = default;
};

/// From the block of the document that the entry was made of, in `language` ("de", "de_DE.UTF-8") where the
/// document has it, else in English, else in the first language of that block's event. Nothing when no block
/// has to do with the entry.
std::optional<WarningDetails> detailsOf(CapAlert const& document, RawEntry const& entry,
                                        std::string_view language);

/// Of the block that the entry was made of; empty when the document does not tell.
std::string languageOfEntry(CapAlert const& document, RawEntry const& entry);

}  // namespace nimbara
