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
  LocationError follow(std::uint32_t, Moved const& moved, std::stop_token) override {
    if (answer_) moved(*answer_);
    return answer_ ? LocationError{LocationError::Kind::cancelled, ""} : answer_.error();
  }

 private:
  Result<LocationFix, LocationError> answer_;
};

}  // namespace nimbara::test
