// Takes out of a wttr.in answer what cannot be: the texts of such values become empty, as unread ones are.
#pragma once

#include "model/wttr_response.h"

namespace nimbara {

void dropImpossible(WttrResponse& answer);

}  // namespace nimbara
