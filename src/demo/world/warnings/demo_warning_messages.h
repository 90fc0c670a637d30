// The messages of the demo's European warnings: which there are at a moment, and the document of each.
#pragma once

#include "demo/world/warnings/demo_regions.h"
#include "demo/world/warnings/demo_warnings.h"

#include <string>
#include <vector>

namespace nimbara {

struct DemoWarningMessage {
  DemoRegion region;
  DemoWarning warning;
  Instant sent;
  bool isUpdate = false;

  std::string identifier() const;
  /// What ends the address of the message's document.
  std::string documentName() const;
};

/// Those that a feed lists: of the weather of the next two days, and what such feeds also have in them, a
/// warning that has ended, a green one, and one for the region beside.
std::vector<DemoWarningMessage> demoWarningMessages(std::vector<DemoRegion> const& regions, Instant now);

/// In the form of the Common Alerting Protocol, in the country's language and in English.
std::string demoWarningDocument(DemoWarningMessage const& message);

/// The messages whole, as the service's JSON feed of a country has them.
std::string demoWarningList(std::vector<DemoWarningMessage> const& messages);

/// "1; Wind".
std::string demoAwarenessType(std::string_view kind);

/// Both beginning with what is not worth a warning.
inline constexpr std::string_view kDemoWarningColours[] = {"Green", "Yellow", "Orange", "Red"};
inline constexpr std::string_view kDemoWarningSeverities[] = {"Minor", "Moderate", "Severe", "Extreme"};

/// "2026-11-21T06:00:00+00:00".
std::string demoWarningTime(Instant instant);

/// For XML.
std::string demoXmlText(std::string_view text);

}  // namespace nimbara
