// The end of the process in time, whoever does not answer: a resolver, a bus, a file system. What matters has
// been written by then, each change in a transaction of its own.
#pragma once

#include <chrono>

namespace nimbara {

/// Ends the process with `code` unless it has ended by itself within `patience`.
void endWithin(std::chrono::milliseconds patience, int code);

}  // namespace nimbara
