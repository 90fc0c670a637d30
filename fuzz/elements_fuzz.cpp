// Any bytes as element sets: through the reader, the propagator and the batch, whose error codes must agree
// and whose states must be numbers.

#include "globe/propagation/sgp4_batch.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara::SGP4;
  std::string_view const text(reinterpret_cast<char const*>(data), size);
  std::vector<SatRec> records;
  for (TLE const& tle : readElements(text, Checksums::reported).elements) records.push_back(initialise(tle));
  SatelliteBatch batch(records);
  for (double const minutes : {0.0, 100.0, -10'080.0}) {
    batch.propagateSinceEpochs(minutes);
    for (std::size_t i = 0; i < records.size(); ++i) {
      StateVector const state = batch.state(i);
      StateVector const expected = propagate(records[i], minutes);
      if (state.error == errorCode::kNone && !std::isfinite(state.position[0])) std::abort();
      if (state.error == errorCode::kNone && expected.error != errorCode::kNone &&
          std::hypot(state.position[0], state.position[1], state.position[2]) > kEarthRadiusKm + 1) {
        std::abort();
      }
    }
  }
  return 0;
}
