#include "cli/nowcast_look.h"

#include <memory>

namespace nimbara {

NowcastLook::NowcastLook(NowcastService& service, Coordinate place) {
  auto const shared = std::make_shared<std::promise<NowcastReading>>();
  answered_ = shared->get_future();
  if (nowcastSourcesAt(place).empty()) {
    shared->set_value(service.fetch(place));
    return;
  }
  pool_.emplace(1U);
  pool_->run([&service, place, shared, asking = asking_.get_token()](std::stop_token const&) {
    shared->set_value(service.fetch(place, asking));
  });
}

NowcastLook::~NowcastLook() {
  asking_.request_stop();
}

NowcastReading NowcastLook::answer(std::chrono::milliseconds patience, std::stop_token const& stop) {
  std::stop_callback const passOn(stop, [this] { asking_.request_stop(); });
  if (answered_.wait_for(patience) != std::future_status::ready) asking_.request_stop();
  return answered_.get();
}

}  // namespace nimbara
