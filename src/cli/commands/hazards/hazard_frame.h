// What the commands of hazards share: the place, the document for scripts with how the check ended, the page,
// and the exit code. A check that failed is never printed as a list without entries.
#pragma once

#include "app/words/hazards/hazard_text.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "cli/terminal.h"

#include <functional>
#include <string>
#include <vector>

namespace nimbara {

struct HazardAnswer {
  HazardCheck check;
  std::string subject;  ///< "the wildfires": for the sentence about a failed check
  std::string advice;   ///< what to do where nothing is configured
  /// The elements of "items"; where `writeDocument` is set, it writes all members of the document.
  std::function<void(JsonWriter&)> writeItems;
  std::function<void(JsonWriter&)> writeMore;  ///< members after the items
  std::function<void(JsonWriter&)> writeDocument;
  std::string heading;                    ///< the state in words
  std::vector<HazardLine> lines;          ///< what was found
  std::vector<std::string> notes;         ///< below
  std::vector<std::string> sideFailures;  ///< of sources without which the answer is still one
};

/// For scripts: why the check failed, in English.
inline std::optional<std::string> reasonOf(HazardCheck const& check) {
  return check.failure ? std::optional(sentenceOf(*check.failure)) : std::nullopt;
}

/// Finds the place, asks and prints. `ask` blocks for the requests.
int runHazard(CommandLine const& line, Session const& session,
              std::function<HazardAnswer(RunContext&, Place const&, HazardWords const&)> const& ask);

}  // namespace nimbara
