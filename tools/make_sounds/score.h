// The sounds of the notification rules, as notes: gentle where something can wait, insistent where it cannot.
#pragma once

#include "synthesizer.h"

namespace nimbara::sounds {

std::vector<Sound> const& score();

}  // namespace nimbara::sounds
