// A weather station's service, made from the generated weather: consent, tokens that rotate, the stations of
// an account and public ones. A token holds in it what the next one must be, so that nothing is remembered
// but which refresh tokens were used.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/oauth2/authorize": a page with a link that gives the consent, and one that denies it.
DemoAnswer netatmoConsent(DemoRequest const& request, Instant now);

/// "/oauth2/token", a POST: each refresh voids the token that it was asked with. "demo" is always good.
DemoAnswer netatmoToken(DemoRequest const& request, Instant now);

/// "/api/getstationsdata": a good station in Berlin, one in the sun in Munich and one in Hamburg whose
/// outdoor module went silent. Access tokens hold for three hours.
DemoAnswer netatmoStations(DemoRequest const& request, Instant now);

/// "/api/getpublicdata": nine stations in the box, one of them indoors, in the service's three shapes.
DemoAnswer netatmoPublic(DemoRequest const& request, Instant now);

/// "/get_livedata_info": a gateway in Berlin.
DemoAnswer ecowittLiveData(DemoRequest const& request, Instant now);

}  // namespace nimbara
