// What the suppliers of infrared pictures of the whole globe would answer: the clouds of the generated
// weather at every fifth degree, cold and bright over warm and dark ground. A time that is not listed gives a
// transparent picture.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/geoserver/satellite/ows": capabilities with six hours, the newest of two to three hours ago, and
/// pictures.
DemoAnswer nowCoastClouds(DemoRequest const& request, Instant now);
/// "/geoserver/mumi/ows": capabilities with every third hour.
DemoAnswer eumetViewTimes(DemoRequest const& request, Instant now);
/// "/geoserver/wms": pictures of them.
DemoAnswer eumetViewClouds(DemoRequest const& request, Instant now);

}  // namespace nimbara
