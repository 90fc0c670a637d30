#include "score.h"

namespace nimbara::sounds {

std::vector<Sound> const& score() {
  using enum Voice;
  // voice, start, duration, pitch, its end, loudness
  static std::vector<Sound> const kSounds{
      // Drops, each a little lower.
      {"rain_alert",
       -9,
       {{drop, 0.00, 0.22, 1500, 950, 0.9},
        {drop, 0.17, 0.22, 1250, 800, 0.7},
        {drop, 0.40, 0.25, 1700, 1050, 1},
        {drop, 0.56, 0.25, 1120, 720, 0.7},
        {drop, 0.80, 0.40, 1330, 840, 0.8},
        {chime, 0.80, 1.00, 659.3, 0, 0.25}}},
      // Two low bells over a roll.
      {"storm_alert",
       -5,
       {{breath, 0.00, 2.20, 140, 70, 1.4},
        {bell, 0.10, 1.60, 220, 0, 0.9},
        {bell, 0.65, 1.70, 174.6, 0, 1}}},
      // A rising line that comes twice.
      {"flood_alert",
       -5,
       {{pluck, 0.00, 0.45, 293.7, 0, 1},
        {pluck, 0.18, 0.45, 349.2, 0, 1},
        {pluck, 0.36, 0.60, 440, 0, 1},
        {pluck, 0.90, 0.45, 293.7, 0, 1},
        {pluck, 1.08, 0.45, 349.2, 0, 1},
        {pluck, 1.26, 0.95, 440, 0, 1}}},
      // Bright and small.
      {"uv_high",
       -8,
       {{chime, 0.00, 0.60, 1318.5, 0, 0.8},
        {chime, 0.14, 0.60, 1568, 0, 0.8},
        {chime, 0.28, 1.20, 2093, 0, 1}}},
      // Two calls of a fourth.
      {"weather_warning",
       -5,
       {{bell, 0.00, 0.80, 523.3, 0, 1},
        {bell, 0.30, 1.30, 698.5, 0, 1},
        {pluck, 0.00, 0.40, 261.6, 0, 0.5}}},
      // An alternating call that cannot be taken for anything else.
      {"weather_critical",
       -2,
       {{reed, 0.00, 0.24, 880, 0, 1},
        {reed, 0.26, 0.24, 659.3, 0, 1},
        {reed, 0.52, 0.24, 880, 0, 1},
        {reed, 0.78, 0.24, 659.3, 0, 1},
        {reed, 1.20, 0.24, 880, 0, 1},
        {reed, 1.46, 0.24, 659.3, 0, 1},
        {reed, 1.72, 0.24, 880, 0, 1},
        {reed, 1.98, 0.40, 659.3, 0, 1}}},
      // A crack and what rolls after it.
      {"lightning_alert",
       -4,
       {{drop, 0.00, 0.12, 3200, 400, 1.2},
        {drop, 0.10, 0.12, 2600, 350, 1},
        {breath, 0.05, 1.70, 420, 80, 2.4},
        {bell, 0.20, 1.40, 392, 0, 0.5}}},
      // A siren's rise and fall, soft at its edges.
      {"hurricane_alert",
       -4,
       {{reed, 0.00, 0.75, 330, 523.3, 1},
        {reed, 0.72, 0.75, 523.3, 330, 1},
        {breath, 0.00, 2.30, 250, 500, 0.8},
        {bell, 1.40, 1.00, 330, 0, 0.8}}},
      // Upwards, in major.
      {"morning_summary",
       -9,
       {{chime, 0.00, 0.90, 523.3, 0, 0.8},
        {chime, 0.20, 0.90, 659.3, 0, 0.8},
        {chime, 0.40, 0.90, 784, 0, 0.8},
        {chime, 0.60, 1.60, 1046.5, 0, 1}}},
      // Downwards, and lower.
      {"evening_summary",
       -10,
       {{chime, 0.00, 0.90, 784, 0, 0.9},
        {chime, 0.26, 0.90, 659.3, 0, 0.9},
        {chime, 0.52, 1.70, 440, 0, 1},
        {chime, 0.52, 1.70, 220, 0, 0.5}}},
      // A short nod.
      {"beta_notification", -8, {{pluck, 0.00, 0.35, 587.3, 0, 0.9}, {pluck, 0.13, 0.80, 880, 0, 1}}},
      // One tone that sinks.
      {"temp_drop", -8, {{drop, 0.00, 1.30, 784, 262, 1}, {chime, 0.90, 1.00, 261.6, 0, 0.7}}},
      // A gust that comes and goes.
      {"wind_alert",
       -6,
       {{breath, 0.00, 1.10, 300, 900, 1},
        {breath, 0.70, 1.60, 900, 260, 1},
        {chime, 0.55, 1.20, 587.3, 0, 0.35}}},
  };
  return kSounds;
}

}  // namespace nimbara::sounds
