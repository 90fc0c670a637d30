#include "platform/linux/timerfd_wake_timer.h"

#include <cerrno>
#include <cstdint>
#include <limits>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace nimbara {

namespace {

using std::chrono::milliseconds;

/// Where nothing is due the timer is set all the same, so that a set clock is noticed.
constexpr std::chrono::hours kForever{24 * 365};

timespec momentIn(milliseconds span) {
  auto const moment = std::chrono::system_clock::now() + span;
  auto const seconds = std::chrono::floor<std::chrono::seconds>(moment.time_since_epoch());
  auto const rest = std::chrono::nanoseconds(moment.time_since_epoch() - seconds);
  return {static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())};
}

}  // namespace

TimerfdWakeTimer::TimerfdWakeTimer()
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)),
      event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (timer_ < 0 || event_ < 0) throw std::runtime_error("the kernel provided no timer");
}

TimerfdWakeTimer::~TimerfdWakeTimer() {
  close(timer_);
  close(event_);
}

void TimerfdWakeTimer::arm(std::optional<milliseconds> span) const {
  itimerspec setting{};
  // A moment of zero would disarm the timer.
  setting.it_value = momentIn(std::max(span.value_or(kForever), milliseconds(1)));
  timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &setting, nullptr);
}

WakeTimer::Cause TimerfdWakeTimer::wait(std::optional<milliseconds> span, std::stop_token stop) {
  std::stop_callback const wakeOnStop(stop, [this] { wake(); });
  arm(span);
  pollfd channels[] = {{timer_, POLLIN, 0}, {event_, POLLIN, 0}};
  while (poll(channels, 2, -1) < 0 && errno == EINTR) {
  }
  std::uint64_t count = 0;
  bool const wasAsked = read(event_, &count, sizeof count) > 0;
  bool const timerSpoke = channels[0].revents != 0;
  bool const clockChanged = timerSpoke && read(timer_, &count, sizeof count) < 0 && errno == ECANCELED;
  if (stop.stop_requested()) return Cause::stopped;
  if (clockChanged) return Cause::clockChanged;
  return wasAsked ? Cause::asked : Cause::due;
}

void TimerfdWakeTimer::wake() {
  std::uint64_t const one = 1;
  // Full means that a waking is waiting already.
  std::ignore = write(event_, &one, sizeof one);
}

}  // namespace nimbara
