// A nowcast for scripts. The same wherever it is part of a document.
#pragma once

#include "base/json/json.h"
#include "feeds/nowcast/nowcast_service.h"

#include <optional>
#include <string>

namespace nimbara {

/// An object. Without a sentence, as where nothing could be checked, that member is null.
void writeNowcast(JsonWriter& json, NowcastReading const& reading,
                  std::optional<std::string> const& sentence);

}  // namespace nimbara
