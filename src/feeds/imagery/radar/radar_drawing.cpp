#include "feeds/imagery/radar/radar_drawing.h"

#include "base/json/json_codec.h"

namespace nimbara {

Result<RadarDrawing, DecodeError> radarDrawingIn(std::string_view document) {
  return decodeJson<RadarDrawing>(document);
}

}  // namespace nimbara
