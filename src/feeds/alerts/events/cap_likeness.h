// Whether two messages are one and the same but for their language or for having been issued anew. Pure.
#pragma once

#include "feeds/alerts/events/event_memory.h"
#include "feeds/cap/cap_alert.h"

#include <string>
#include <string_view>

namespace nimbara {

/// "2.49.0.1.398-00" of "2.49.0.1.398-00-EN"; the whole where it does not end in a language.
std::string_view withoutLanguage(std::string_view identifier);

/// Sender, period, level, codes and shapes: equal for the messages of one text in several languages. Empty
/// for a message that says nothing.
std::string languageFreeText(CapAlert const& message);

/// Of two messages with equal `languageFreeText` whether they say the same in different languages: surely by
/// their identifiers, or perhaps, being sent at once for the same areas.
enum class Translation { no, perhaps, surely };
Translation translationOf(CapAlert const& a, CapAlert const& b);

/// By codes, names and shapes.
bool haveCommonArea(CapAlert const& a, CapAlert const& b);

/// Issuer, kind of event, areas and the hour of the beginning; `hasHour` is false where none is stated.
struct Likeness {
  std::string text;
  std::string timeless;  ///< without the hour
  bool hasHour = false;
};
Likeness likenessOf(CapAlert const& message);

/// Of its first block.
EventPeriod periodOf(CapAlert const& message);

}  // namespace nimbara
