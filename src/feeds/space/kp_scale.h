// What a planetary K index means: its step on the scale of storms, and where auroras are seen. Pure.
#pragma once

#include "base/geodesy.h"

namespace nimbara {

/// The steps of the scale: quiet, unsettled, active, and the five storms G1 to G5.
inline constexpr int kKpLevels = 8;
int kpLevel(double kp);

enum class AuroraSight { none, low, high };

/// How auroras stand at a place where the sky is dark and clear: not at all, low above the horizon on the
/// side of the pole, or high.
AuroraSight auroraSight(Coordinate place, double kp);

}  // namespace nimbara
