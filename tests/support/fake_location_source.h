// A location source that says what a test wants said.
#pragma once

#include "platform/location_source.h"

#include <utility>

namespace nimbara::test {

class FakeLocationSource final : public LocationSource {
 public:
  explicit FakeLocationSource(Result<LocationFix, LocationError> answer) : answer_(std::move(answer)) {}
  Result<LocationFix, LocationError> locate(std::chrono::milliseconds, std::stop_token) override {
    return answer_;
  }

 private:
  Result<LocationFix, LocationError> answer_;
};

}  // namespace nimbara::test
