#include "desktop/imagery/fetched_pictures.h"

#include "app/services/forecasts/side_by_side.h"

#include <algorithm>
#include <atomic>

namespace nimbara {

using Kind = ServiceFailure::Kind;

std::vector<FetchedPicture> fetchedAll(std::size_t count,
                                       std::function<FetchedPicture(std::size_t)> const& fetch) {
  constexpr std::size_t kAtOnce = 6;
  constexpr int kEnough = 2;
  std::vector<FetchedPicture> got(count, std::unexpected(ServiceFailure::of(Kind::noAnswer)));
  std::atomic<std::size_t> next = 0;
  std::atomic<int> failures = 0;
  auto const work = [&] {
    for (std::size_t i = next++; i < count && failures < kEnough; i = next++) {
      got[i] = fetch(i);
      if (!got[i] && !isMissing(got[i].error())) ++failures;
    }
  };
  runAll(std::vector<std::function<void()>>(std::min(count, kAtOnce), work), Waiting::sideBySide);
  return got;
}

bool isMissing(ServiceFailure const& failure) {
  constexpr int kNotFound = 404;
  return failure.kind == Kind::status && failure.status == kNotFound;
}

}  // namespace nimbara
