#include "cli/pages/warnings/source_choices.h"

#include "base/text/display_text.h"
#include "feeds/alerts/coverage.h"
#include "feeds/alerts/routing/warning_route.h"

namespace nimbara {

std::vector<SourceChoice> sourceChoices(SavedPlace const& place) {
  GovAlertPlace asked = govAlertPlace(place.coordinate);
  asked.chosenSource = place.warningSource.value_or("");
  std::string_view const first = warningRoute(asked).front();
  std::vector<SourceChoice> choices;
  for (std::string_view const name : possibleSources(asked)) {
    choices.push_back({std::string(name), warningServiceName(name), choices.empty(), name == first});
  }
  return choices;
}

std::string sourceTable(std::vector<SourceChoice> const& choices) {
  std::string out;
  for (SourceChoice const& choice : choices) {
    out += (choice.chosen ? " * " : "   ") + fitted(choice.name, 12) + choice.service +
           (choice.usual ? " (usual)" : "") + "\n";
  }
  return out;
}

}  // namespace nimbara
