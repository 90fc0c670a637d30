// What messages of the Common Alerting Protocol mean for a place: which of them are one event, which of those
// holds, and whether it concerns the place. Pure.
#pragma once

#include "feeds/alerts/gov_alert_service.h"
#include "feeds/cap/cap_message.h"

#include <span>
#include <string_view>

namespace nimbara {

/// Of a place outside, to the nearest edge of a warning that still is listed for it.
inline constexpr double kNearWarningKm = 50;

/// For which place and reader, and when.
struct CapView {
  std::string_view source;  ///< "wmo"
  Coordinate place;
  std::string_view countryCode;  ///< of the place; empty on the open sea
  std::string_view language;     ///< of the reader: "de", "de_DE.UTF-8"
  Instant now;
};

/// Messages whose status is not "Actual" say nothing, nor do those that acknowledge or refuse others. What
/// hangs together by references, also by messages that earlier lists had (`known`), is one event, as are the
/// messages of one text in several languages, and without references what one issuer says of one kind, areas
/// and hour. Its newest message holds. Ended early, by a cancellation or by a message that only tells the
/// end, it is called off; with its last block's end it is over.
///
/// Where shapes are drawn they alone decide: the place is in them, or near, or the event is not listed. Where
/// none are, the source's own finding counts; without it the warning is one that nobody can place, on the
/// open sea none. A warning of another country's issuer is at most a near one. Texts are those of the
/// reader's language, else English, else the first, to the letter.
GovSourceAnswer capEvents(std::span<CapMessage const> messages, CapView const& view, KnownEvents& known);

}  // namespace nimbara
