// Many pictures of one map at once.
#pragma once

#include "base/result.h"
#include "platform/service_failure.h"

#include <functional>
#include <string>
#include <vector>

namespace nimbara {

using FetchedPicture = Result<std::string, ServiceFailure>;

/// All of them by six at once, in their order; not the rest where two have failed. That there is none (404)
/// is no failure.
std::vector<FetchedPicture> fetchedAll(std::size_t count,
                                       std::function<FetchedPicture(std::size_t)> const& fetch);

bool isMissing(ServiceFailure const& failure);

}  // namespace nimbara
