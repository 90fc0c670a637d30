#include "desktop/core/process_end.h"

#include <thread>
#include <unistd.h>

namespace nimbara {

void endWithin(std::chrono::milliseconds patience, int code) {
  std::thread([patience, code] {
    std::this_thread::sleep_for(patience);
    _exit(code);
  }).detach();
}

}  // namespace nimbara
