#include "platform/linux/dbus/service/weather_object.h"

#include <algorithm>
#include <iterator>

namespace nimbara {

namespace {

constexpr char const* kInterface = kServiceName;

using BusRecord = std::map<std::string, sdbus::Variant>;
using BusRecords = std::vector<BusRecord>;

sdbus::Variant busValue(std::string const& text) {
  return textForBus(text);
}

sdbus::Variant busValue(std::vector<std::string> const& texts) {
  std::vector<std::string> clean;
  clean.reserve(texts.size());
  std::ranges::transform(texts, std::back_inserter(clean), textForBus);
  return clean;
}

template <class Number>
sdbus::Variant busValue(Number number) {
  return number;
}

BusRecord busRecord(ServiceRecord const& record) {
  BusRecord out;
  for (auto const& [key, value] : record) {
    out.emplace(key, std::visit([](auto const& known) { return busValue(known); }, value));
  }
  return out;
}

BusRecords busRecords(ServiceRecords const& records) {
  BusRecords out;
  out.reserve(records.size());
  std::ranges::transform(records, std::back_inserter(out), busRecord);
  return out;
}

template <class Answer>
Answer known(std::optional<Answer> answer) {
  if (!answer)
    throw sdbus::Error(std::string(kServiceName) + ".Error.UnknownPlace", "there is no such saved place");
  return std::move(*answer);
}

/// Of the place that a record is about.
std::string idIn(ServiceRecord const& record) {
  auto const found = record.find("place");
  return found == record.end() ? std::string() : std::get<std::string>(found->second);
}

}  // namespace

WeatherObject::WeatherObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate)
    : face_(face),
      gate_(gate),
      told_(face.properties()),
      object_(sdbus::createObject(connection, kServicePath)) {
  describeMethods();
  describeSignals();
  describeProperties();
  object_->finishRegistration();
}

void WeatherObject::describeMethods() {
  object_->registerMethod("Places")
      .onInterface(kInterface)
      .withOutputParamNames("places")
      .implementedAs([this] {
        gate_.admit(*object_);
        return busRecords(face_.places());
      });
  object_->registerMethod("Current")
      .onInterface(kInterface)
      .withInputParamNames("place")
      .withOutputParamNames("current")
      .implementedAs([this](std::string const& place) {
        gate_.admit(*object_, place);
        return busRecord(known(face_.current(place)));
      });
  object_->registerMethod("Hours")
      .onInterface(kInterface)
      .withInputParamNames("place")
      .withOutputParamNames("hours")
      .implementedAs([this](std::string const& place) {
        gate_.admit(*object_, place);
        return busRecords(known(face_.hours(place)));
      });
  object_->registerMethod("Warnings")
      .onInterface(kInterface)
      .withInputParamNames("place")
      .withOutputParamNames("state", "warnings")
      .implementedAs([this](std::string const& place) {
        gate_.admit(*object_, place);
        auto const answer = known(face_.warnings(place));
        return std::tuple(answer.state, busRecords(answer.warnings));
      });
  object_->registerMethod("Nowcast")
      .onInterface(kInterface)
      .withInputParamNames("place")
      .withOutputParamNames("nowcast", "steps")
      .implementedAs([this](std::string const& place) {
        gate_.admit(*object_, place);
        auto const answer = known(face_.nowcast(place));
        return std::tuple(busRecord(answer.summary), busRecords(answer.steps));
      });
  object_->registerMethod("Open")
      .onInterface(kInterface)
      .withInputParamNames("place", "activation_token")
      .implementedAs([this](std::string const& place, std::string const& token) {
        gate_.admit(*object_, place);
        std::string const id = place.empty() ? place : idIn(known(face_.current(place)));
        face_.open(id, tokenForUse(token));
      });
  object_->registerMethod("Refresh")
      .onInterface(kInterface)
      .withOutputParamNames("begun")
      .implementedAs([this] {
        gate_.admit(*object_);
        return face_.refresh();
      });
}

void WeatherObject::describeSignals() {
  for (char const* const signal : {"WarningCreated", "WarningUpdated", "WarningEnded"}) {
    object_->registerSignal(signal)
        .onInterface(kInterface)
        .withParameters<std::string, BusRecord>("place", "warning");
  }
  object_->registerSignal("Changed").onInterface(kInterface);
}

void WeatherObject::describeProperties() {
  object_->registerProperty("Version")
      .onInterface(kInterface)
      .withGetter([] { return kServiceVersion; })
      .withUpdateBehavior(sdbus::Flags::CONST_PROPERTY_VALUE);
  auto const property = [this](char const* name, auto member) {
    object_->registerProperty(name).onInterface(kInterface).withGetter([this, member] {
      return face_.properties().*member;
    });
  };
  property("SelectedPlace", &ServiceProperties::selectedPlace);
  property("PlaceCount", &ServiceProperties::placeCount);
  property("WarningCount", &ServiceProperties::warningCount);
  property("LastUpdated", &ServiceProperties::lastUpdated);
}

void WeatherObject::tellProperties() {
  ServiceProperties const now = face_.properties();
  std::vector<std::string> others;
  auto const compare = [&](char const* name, auto member) {
    if (now.*member != told_.*member) others.emplace_back(name);
  };
  compare("SelectedPlace", &ServiceProperties::selectedPlace);
  compare("PlaceCount", &ServiceProperties::placeCount);
  compare("WarningCount", &ServiceProperties::warningCount);
  compare("LastUpdated", &ServiceProperties::lastUpdated);
  told_ = now;
  if (!others.empty()) object_->emitPropertiesChangedSignal(kInterface, others);
}

void WeatherObject::announce(std::vector<WarningNews> const& news) {
  for (WarningNews const& each : news) {
    bool const isEnd = each.kind == WarningNews::Kind::ended;
    bool const isNew = each.kind == WarningNews::Kind::created;
    object_->emitSignal(isNew   ? "WarningCreated"
                        : isEnd ? "WarningEnded"
                                : "WarningUpdated")
        .onInterface(kInterface)
        .withArguments(each.place, busRecord(each.warning));
  }
  object_->emitSignal("Changed").onInterface(kInterface);
  tellProperties();
}

}  // namespace nimbara
