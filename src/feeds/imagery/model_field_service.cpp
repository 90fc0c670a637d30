#include "feeds/imagery/model_field_service.h"

#include <algorithm>

namespace nimbara {

namespace {

using Kind = ServiceFailure::Kind;

constexpr std::size_t kLargestAnswer = std::size_t{2} << 20;
constexpr std::uintmax_t kMostOnDisk = std::uintmax_t{8} << 20;

}  // namespace

ModelFieldService::ModelFieldService(ImageryRequests& requests, Clock const& clock, Options options)
    : requests_(requests),
      clock_(clock),
      options_(std::move(options)),
      cache_(options_.folder, kMostOnDisk) {}

ModelFieldsReading ModelFieldService::fetch(ModelGrid const& grid, std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  // A new hour asks anew, whose first value is that hour's.
  auto const hour = std::chrono::floor<std::chrono::hours>(clock_.now()).time_since_epoch().count();
  std::string const key = modelFieldsPath(grid) + " " + std::to_string(hour);
  auto const known =
      std::ranges::find(kept_, key, &std::pair<std::string, std::shared_ptr<ModelFields const>>::first);
  if (known != kept_.end()) return known->second;
  auto fields = ask(grid, key, stop);
  if (!fields) return fields;
  if (kept_.size() >= kMostInMemory) kept_.erase(kept_.begin());
  kept_.emplace_back(key, *fields);
  return fields;
}

ModelFieldsReading ModelFieldService::ask(ModelGrid const& grid, std::string const& key,
                                          std::stop_token const& stop) {
  if (auto const kept = cache_.find(key)) {
    if (auto fields = parseModelFields(*kept, grid))
      return std::make_shared<ModelFields const>(std::move(*fields));
  }
  if (failure_ && restsUntil_ && clock_.steadyNow() < *restsUntil_) return std::unexpected(*failure_);
  failure_.reset();
  auto const answer = requests_.get(options_.openMeteoBase + modelFieldsPath(grid, options_.openMeteoKey),
                                    kLargestAnswer, stop);
  if (stop.stop_requested()) return std::unexpected(ServiceFailure::of(Kind::noAnswer));
  if (!answer) {
    failure_ = answer.error();
  } else if (auto fields = parseModelFields(answer->body, grid)) {
    cache_.keep(key, answer->body);
    return std::make_shared<ModelFields const>(std::move(*fields));
  } else {
    failure_ = ServiceFailure::of(Kind::unreadable,
                                  "the response is not a forecast for a map (" + fields.error().text() + ")");
  }
  restsUntil_ = clock_.steadyNow() + kRestAfterFailure;
  return std::unexpected(*failure_);
}

}  // namespace nimbara
