#include "app/words/country_text.h"

#include "base/words/country_names.h"
#include "gazetteer/gazetteer.h"

namespace nimbara {

std::string countryText(Coordinate coordinate, std::string const& known, Texts const& texts) {
  if (known.empty() || texts.language() == "en" || !isValid(coordinate)) return known;
  std::string name = countryName(describePlace(coordinate).countryCode, texts.language());
  return name.empty() ? known : name;
}

}  // namespace nimbara
