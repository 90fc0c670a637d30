// What a block of a message says, whatever its language and its place: its kind, its level, whether it warns
// at all. Pure functions.
#pragma once

#include "feeds/cap/cap_alert.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

struct CapGrade {
  AlertSeverity severity = AlertSeverity::advisory;
  bool isStated = false;
};

/// Of the issuer's word. What is not graded is taken for medium, as the National Weather Service's is.
CapGrade gradeOf(CapInfo const& info);

/// "green", "yellow", "orange" or "red" of the awareness level, which may be a number or a word alone; empty
/// where none is stated. The severity never makes a colour.
std::string colourOf(CapInfo const& info);

/// By the awareness type, the codes of the event, its name, the headline, in this order.
WarningKind kindOf(CapInfo const& info);

/// It tells that something is over, or that there is nothing to warn of.
bool tellsTheEnd(CapInfo const& info);

bool isOver(CapInfo const& info, Instant now);

/// It is for those at sea, by what it says of itself, by the event's name or by all of its areas' names.
bool isForWaters(CapInfo const& info);

/// The issuer's name of the event; never empty where the block says anything.
std::string titleOf(CapInfo const& info);

/// The description, else the headline; empty where there is neither.
std::string textOf(CapInfo const& info);

/// The service's name, else what its sender's address says of it.
std::string issuerOf(CapAlert const& message, CapInfo const& info);

/// What tells the event from others of one message, in no language where that is possible: "3; thunderstorm",
/// "HMCEVE:216", else the event's name.
std::string eventWords(CapInfo const& info);

}  // namespace nimbara
