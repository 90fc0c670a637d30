#include "desktop/imagery/wish_worker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <semaphore>
#include <vector>

namespace nimbara {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using testing::ElementsAre;

/// What was served; each serving waits for nobody.
struct Served {
  bool take(int wish, bool isDone) {
    {
      std::lock_guard const lock(mutex);
      wishes.push_back(wish);
    }
    times.release();
    return isDone;
  }
  std::vector<int> all() {
    std::lock_guard const lock(mutex);
    return wishes;
  }

  std::mutex mutex;
  std::vector<int> wishes;
  std::counting_semaphore<> times{0};
};

TEST(WishWorker, ServesEachWishOnceWhereItIsDone) {
  Served served;
  {
    WishWorker<int> worker({milliseconds(1), milliseconds(1)},
                           [&](int wish, std::stop_token const&) { return served.take(wish, true); });
    worker.want(1);
    served.times.acquire();
    worker.want(1);
    worker.want(2);
    served.times.acquire();
    worker.want(std::nullopt);
    worker.want(2);
    served.times.acquire();
  }
  EXPECT_THAT(served.all(), ElementsAre(1, 2, 2));
}

TEST(WishWorker, ServesAgainWhatIsNotDoneUntilNobodyWantsIt) {
  Served served;
  WishWorker<int> worker({milliseconds(1), milliseconds(2)},
                         [&](int wish, std::stop_token const&) { return served.take(wish, wish != 1); });
  worker.want(1);
  for (int i = 0; i < 4; ++i) served.times.acquire();
  worker.want(2);
  while (served.all().back() != 2) served.times.acquire();
  std::size_t const count = served.all().size();
  worker.want(3);
  while (served.all().back() != 3) served.times.acquire();
  EXPECT_EQ(served.all().size(), count + 1) << "1 is wanted no more";
}

TEST(WishWorker, ANewWishDoesNotWaitForTheRest) {
  Served served;
  WishWorker<int> worker({hours(1), hours(1)},
                         [&](int wish, std::stop_token const&) { return served.take(wish, false); });
  for (int const wish : {1, 2}) {
    worker.want(wish);
    served.times.acquire();
  }
  EXPECT_THAT(served.all(), ElementsAre(1, 2));
}

TEST(WishWorker, StopsWhatIsUnderWay) {
  std::binary_semaphore begun{0}, stopped{0};
  WishWorker<int> worker({hours(1), hours(1)}, [&](int, std::stop_token const& stop) {
    std::stop_callback const tell(stop, [&] { stopped.release(); });
    begun.release();
    stopped.acquire();
    return true;
  });
  worker.want(1);
  begun.acquire();
  worker.want(std::nullopt);
}

}  // namespace
}  // namespace nimbara
