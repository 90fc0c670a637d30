// States of the air and the climate for tests.
#pragma once

#include "app/state/supplement_state.h"
#include "states.h"

namespace nimbara::test {

/// Two days of moderate air with pollen and strong sun, five degrees above what is usual.
SupplementState airOf(Coordinate place);

/// Nobody could be asked.
SupplementState failedAir(Coordinate place);

std::shared_ptr<EngineSnapshot> withAir(std::shared_ptr<EngineSnapshot> snapshot,
                                        SupplementState (*made)(Coordinate));

}  // namespace nimbara::test
