// How whoever works with a service gets it: the one that is in use now, held for as long as the work takes. A
// service that was replaced meanwhile, since the settings that it was made with have changed, ends with the
// last of those that hold it.
#pragma once

#include <functional>
#include <memory>

namespace nimbara {

/// Never gives null.
template <class T>
using InUse = std::function<std::shared_ptr<T>()>;

/// One that is never replaced and outlives whoever asks.
template <class T>
InUse<T> always(T& one) {
  return [&one] { return std::shared_ptr<T>(std::shared_ptr<void>(), &one); };
}

}  // namespace nimbara
