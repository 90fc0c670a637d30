// What a message says beside its warning: that it is one at all, that it goes on from another, that it ends
// one. Pure.
#pragma once

#include "feeds/cap/cap_alert.h"

namespace nimbara {

/// Whether a message has a say: it is neither a test nor an acknowledgement nor a refusal.
bool speaks(CapAlert const& message);
bool isCancellation(CapAlert const& message);
/// A cancellation, or one that tells nothing but the end.
bool endsEvent(CapAlert const& message);
/// It warns, and goes on from what was said before.
bool isUpdate(CapAlert const& message);

}  // namespace nimbara
