#include "geobuf.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace nimbara::gazetteer {

namespace {

/// One message of Protocol Buffers, field after field.
class Message {
 public:
  explicit Message(std::string_view bytes) : rest_(bytes) {}

  bool next() {
    if (rest_.empty()) return false;
    std::uint64_t const tag = varint();
    field_ = static_cast<int>(tag >> 3);
    value_ = 0;
    bytes_ = {};
    switch (tag & 7) {
      case 0:
        value_ = varint();
        break;
      case 1:
        bytes_ = take(8);
        break;
      case 2:
        bytes_ = take(varint());
        break;
      case 5:
        bytes_ = take(4);
        break;
      default:
        throw std::runtime_error("geobuf: unknown wire type");
    }
    return true;
  }

  int field() const { return field_; }
  std::uint64_t value() const { return value_; }
  std::string_view bytes() const { return bytes_; }

  std::uint64_t varint() {
    std::uint64_t number = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
      auto const byte = static_cast<unsigned char>(take(1).front());
      number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
      if (byte < 0x80) return number;
    }
    throw std::runtime_error("geobuf: a number without end");
  }

  bool atEnd() const { return rest_.empty(); }

 private:
  std::string_view take(std::uint64_t count) {
    if (count > rest_.size()) throw std::runtime_error("geobuf: cut off");
    auto const taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  std::string_view rest_;
  int field_ = 0;
  std::uint64_t value_ = 0;
  std::string_view bytes_;
};

std::vector<std::uint64_t> packedNumbers(std::string_view bytes) {
  std::vector<std::uint64_t> numbers;
  for (Message rest(bytes); !rest.atEnd();) numbers.push_back(rest.varint());
  return numbers;
}

std::int64_t zigzag(std::uint64_t number) {
  return static_cast<std::int64_t>(number >> 1) ^ -static_cast<std::int64_t>(number & 1);
}

enum class GeometryType : std::uint8_t { polygon = 4, multiPolygon = 5 };

/// How many points each ring has. Without lengths there is one ring, which takes all.
std::vector<std::size_t> ringLengths(GeometryType type, std::vector<std::uint64_t> const& lengths,
                                     std::size_t points) {
  if (lengths.empty()) return {points};
  if (type == GeometryType::polygon) return {lengths.begin(), lengths.end()};
  std::vector<std::size_t> rings;
  for (std::size_t at = 1; at < lengths.size(); ++at) {
    for (std::uint64_t left = lengths[at]; left > 0; --left) rings.push_back(lengths.at(++at));
  }
  return rings;
}

std::vector<Ring> readGeometry(std::string_view bytes, double scale) {
  auto type = GeometryType::polygon;
  std::vector<std::uint64_t> lengths;
  std::vector<std::uint64_t> numbers;
  for (Message message(bytes); message.next();) {
    if (message.field() == 1) type = static_cast<GeometryType>(message.value());
    if (message.field() == 2) lengths = packedNumbers(message.bytes());
    if (message.field() == 3) numbers = packedNumbers(message.bytes());
  }
  if (type != GeometryType::polygon && type != GeometryType::multiPolygon) {
    throw std::runtime_error("geobuf: a geometry that is no polygon");
  }
  std::vector<Ring> rings;
  std::size_t at = 0;
  for (std::size_t const length : ringLengths(type, lengths, numbers.size() / 2)) {
    Ring& ring = rings.emplace_back();
    std::int64_t x = 0;
    std::int64_t y = 0;
    for (std::size_t i = 0; i < length; ++i) {
      x += zigzag(numbers.at(at++));
      y += zigzag(numbers.at(at++));
      ring.push_back({static_cast<double>(y) / scale, static_cast<double>(x) / scale});
    }
  }
  return rings;
}

/// The text of a value message; empty for numbers.
std::string textOf(std::string_view bytes) {
  for (Message message(bytes); message.next();) {
    if (message.field() == 1) return std::string(message.bytes());
  }
  return {};
}

Feature readFeature(std::string_view bytes, std::vector<std::string> const& keys, double scale) {
  Feature feature;
  std::vector<std::string> values;
  std::vector<std::uint64_t> properties;
  for (Message message(bytes); message.next();) {
    if (message.field() == 1) feature.rings = readGeometry(message.bytes(), scale);
    if (message.field() == 13) values.push_back(textOf(message.bytes()));
    if (message.field() == 14) properties = packedNumbers(message.bytes());
  }
  for (std::size_t i = 0; i + 1 < properties.size(); i += 2) {
    if (keys.at(properties[i]) == "tzid") feature.zone = values.at(properties[i + 1]);
  }
  if (feature.zone.empty()) throw std::runtime_error("geobuf: a feature without zone");
  return feature;
}

}  // namespace

std::vector<Feature> readGeobuf(std::string_view bytes) {
  std::vector<std::string> keys;
  std::uint64_t precision = 6;
  std::string_view collection;
  for (Message message(bytes); message.next();) {
    if (message.field() == 1) keys.emplace_back(message.bytes());
    if (message.field() == 3) precision = message.value();
    if (message.field() == 4) collection = message.bytes();
  }
  std::vector<Feature> features;
  double const scale = std::pow(10.0, static_cast<double>(precision));
  for (Message message(collection); message.next();) {
    if (message.field() == 1) features.push_back(readFeature(message.bytes(), keys, scale));
  }
  return features;
}

}  // namespace nimbara::gazetteer
