// Work that waits for several services at once. The threads end with the call.
#pragma once

#include <functional>
#include <vector>

namespace nimbara {

enum class Waiting { oneAfterTheOther, sideBySide };

/// Runs all of `tasks` and returns when the last has ended; they must not throw. One after the other they run
/// in their order on the calling thread.
void runAll(std::vector<std::function<void()>> const& tasks, Waiting waiting);

}  // namespace nimbara
