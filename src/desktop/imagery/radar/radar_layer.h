// Fetches and draws the radar for a map on a thread of its own: the newest frame of the view that rests, on
// request all others, and the next supplier in place of one whose pictures are of no use. Asks for nothing
// while nobody looks. Owned by whoever shows it; after its end the listener is called no more.
#pragma once

#include "desktop/imagery/radar/radar_composition.h"
#include "desktop/imagery/radar/radar_sources.h"
#include "desktop/views/map/radar_view.h"

#include <QByteArray>
#include <QSize>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <vector>

namespace nimbara {

struct RadarWish {
  MapView view;
  std::optional<Instant> frame;  ///< none: the newest that was measured
  bool wantsAll = false;         ///< the other frames after it, to be played
  bool isMoving = false;         ///< it is one of many that are played, and need not be sharp
  bool operator==(RadarWish const&) const = default;
};

class RadarLayer {
 public:
  /// Called on the layer's thread, without locks.
  using Listener = std::function<void(RadarProgress)>;
  /// After these spans lists and pictures that failed are looked at again, the second where a host had its
  /// requests of the minute.
  static constexpr std::chrono::seconds kAgain{60}, kSoon{10};
  /// Of the frames that are played those so far apart come first, then those between them.
  static constexpr std::chrono::minutes kFirstApart{10};
  /// Tiles of one of them, where a coarser zoom has fewer: with sixty requests a minute to a host an hour of
  /// frames is played soon, and sharp where it stands still.
  static constexpr std::size_t kMostPlayed = 8;
  static constexpr qsizetype kMostBytes = qsizetype{24} << 20;

  RadarLayer(RadarSources sources, Listener listener);
  ~RadarLayer();
  RadarLayer(RadarLayer const&) = delete;
  RadarLayer& operator=(RadarLayer const&) = delete;

  /// What was wanted before is wanted no more. Returns at once.
  void want(RadarWish const& wish);
  /// Nobody looks: what is under way ends.
  void rest();
  /// A frame of the view that was wanted last, if it is there. Any thread.
  std::optional<PlacedPicture> picture(Instant frame) const;

 private:
  struct Kept {
    RadarFrame frame;
    QByteArray packed;
    bool isDry = false;
    bool isPartial = false;
    bool isCoarse = false;   ///< there is a finer one
    bool isForeign = false;  ///< in the supplier's colours
  };
  struct Turn {
    RadarWish wish;
    std::stop_token stop;    ///< of this wish
    std::stop_token hidden;  ///< of all that is asked until nobody looks
  };
  enum class Outcome { loaded, stopped, later, refused, uncovered };

  void work(std::stop_token const& end);
  std::optional<Turn> next(std::stop_token const& end);
  void serve(Turn const& turn);
  bool begin(Turn const& turn, RadarReading const& reading);
  void takeList(RadarWish const& wish, RadarReading const& reading);
  void fail(Turn const& turn, RadarMiss miss);
  Outcome load(Turn const& turn, RadarReading const& reading, RadarFrame const& frame, bool isFine,
               ServiceFailure& failure);
  bool makeVeil(Turn const& turn, RadarReading const& reading, ServiceFailure& failure);
  void loadOthers(Turn const& turn, RadarReading const& reading, RadarFrame const& first);
  void keep(Turn const& turn, Kept kept, PlacedPicture const& picture);
  void forgetFar();
  void tell(Turn const& turn);
  Kept const* keptOf(RadarFrame const& frame) const;

  RadarSources sources_;
  Listener listener_;
  mutable std::mutex mutex_;  // guards all below but the thread's own
  std::condition_variable_any wake_;
  std::optional<RadarWish> wish_;
  bool isNew_ = false;
  std::stop_source stop_, hidden_;
  std::chrono::seconds pause_ = kAgain;
  RadarProgress progress_;
  MapView view_;  ///< of what is kept
  Instant newest_;
  QSize size_;
  MapPoint northWest_, southEast_;
  std::vector<Kept> kept_;
  // Of the layer's thread.
  QImage veil_;
  std::optional<std::pair<MapView, RadarSource>> veilOf_;
  std::jthread worker_;
};

/// At least `between` apart, of those that were measured from the newest backwards, of forecasts forwards.
std::vector<RadarFrame> thinned(std::vector<RadarFrame> const& frames, std::chrono::minutes between);

}  // namespace nimbara
