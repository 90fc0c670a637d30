// Makes short sounds from notes: a note is a voice at a pitch, struck at a moment. Plain arithmetic; the same
// notes give the same samples every time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace nimbara::sounds {

inline constexpr int kSampleRate = 22'050;  ///< samples a second, one channel

enum class Voice {
  bell,   ///< struck metal, long and inharmonic
  chime,  ///< a soft struck bar
  pluck,  ///< short and round
  reed,   ///< steady and insistent
  drop,   ///< a falling drop of water
  breath  ///< wind: noise around the pitch
};

struct Note {
  Voice voice = Voice::chime;
  double start = 0;     ///< seconds
  double duration = 0;  ///< seconds until it has died away
  double pitch = 0;     ///< hertz
  double pitchEnd = 0;  ///< hertz at its end; 0: stays
  double loudness = 1;  ///< beside the other notes
};

struct Sound {
  std::string name;    ///< of the file, without its ending
  double peakDb = -6;  ///< the loudest sample, in dB below full scale
  std::vector<Note> notes;
};

/// Begins and ends in silence; never beyond full scale.
std::vector<std::int16_t> render(Sound const& sound);

/// The samples as a WAV file's bytes.
std::string wavFile(std::vector<std::int16_t> const& samples);

}  // namespace nimbara::sounds
