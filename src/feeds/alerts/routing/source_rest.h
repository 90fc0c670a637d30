// For how long a source of official warnings is left alone after it has failed. Pure.
#pragma once

#include "platform/service_failure.h"

#include <chrono>

namespace nimbara {

/// After the `failures`th failure in a row (from 1). None where nobody could be reached, which is mostly
/// one's own network and back at any moment, and none where only parts of an answer are missing, which have
/// rests of their own.
std::chrono::minutes restAfterFailure(ServiceFailure const& failure, int failures);

}  // namespace nimbara
