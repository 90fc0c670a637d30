// States of the weather station for tests.
#pragma once

#include "app/engine/station_actions.h"
#include "states.h"

namespace nimbara::test {

/// Two stations of an account where the tests' place is: one with a silent rain gauge and a low battery that
/// is shown, and three public ones around.
StationDesk stationDesk();

/// What the engine shows of that station: 11.4 °C of four minutes ago.
std::shared_ptr<EngineSnapshot> withStation(std::shared_ptr<EngineSnapshot> snapshot);

}  // namespace nimbara::test
