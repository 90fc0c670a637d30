#include "synthesizer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace nimbara::sounds {

namespace {

struct Partial {
  double ratio;     ///< of the pitch
  double loudness;  ///< beside the other partials
  double decay;     ///< how much faster than the note it dies away
};

constexpr Partial kBell[] = {{0.5, 0.25, 0.7}, {1, 1, 1},        {1.19, 0.45, 1.4},
                             {2, 0.5, 1.6},    {2.74, 0.3, 2.2}, {3.76, 0.12, 3}};
constexpr Partial kChime[] = {{1, 1, 1}, {2.76, 0.18, 2.5}, {5.4, 0.05, 5}};
constexpr Partial kPluck[] = {{1, 1, 1}, {2, 0.4, 1.6}, {3, 0.15, 2.4}, {4, 0.06, 3.5}};
constexpr Partial kReed[] = {{1, 1, 0}, {2, 0.5, 0}, {3, 0.35, 0}, {4, 0.15, 0}, {5, 0.1, 0}};
constexpr Partial kDrop[] = {{1, 1, 1}};

struct Instrument {
  std::span<Partial const> partials;  ///< none: noise
  double attack;                      ///< seconds
  double decay;                       ///< e-foldings over the note
};

Instrument instrumentOf(Voice voice) {
  switch (voice) {
    case Voice::bell:
      return {kBell, 0.004, 4.5};
    case Voice::chime:
      return {kChime, 0.008, 5};
    case Voice::pluck:
      return {kPluck, 0.006, 6};
    case Voice::reed:
      return {kReed, 0.02, 0.3};
    case Voice::drop:
      return {kDrop, 0.01, 3.5};
    case Voice::breath:
      break;
  }
  return {{}, 0.35, 1};
}

/// Rises from silence within the attack and is silent at the end of the note.
double envelope(Instrument const& instrument, double time, double duration) {
  constexpr double kRelease = 0.03;
  double const rise = std::min({1.0, time / instrument.attack, (duration - time) / kRelease});
  double const smooth = 0.5 - 0.5 * std::cos(std::numbers::pi * std::max(0.0, rise));
  return smooth * std::exp(-instrument.decay * time / duration);
}

/// White noise, the same each time.
class Noise {
 public:
  double next() {
    state_ = state_ * 1'664'525U + 1'013'904'223U;
    return static_cast<double>(state_ >> 8) / (1U << 23) - 1;
  }

 private:
  std::uint32_t state_ = 20'261'121;
};

/// Lets pass what lies around its pitch.
class Band {
 public:
  double pass(double in, double pitch) {
    double const f = 2 * std::sin(std::numbers::pi * pitch / kSampleRate);
    constexpr double kDamping = 0.35;
    low_ += f * band_;
    band_ += f * (in - low_ - kDamping * band_);
    return band_;
  }

 private:
  double low_ = 0;
  double band_ = 0;
};

void add(Note const& note, std::vector<double>& out) {
  Instrument const instrument = instrumentOf(note.voice);
  auto const first = static_cast<std::size_t>(note.start * kSampleRate);
  auto const count = static_cast<std::size_t>(note.duration * kSampleRate);
  out.resize(std::max(out.size(), first + count));
  double const bend = note.pitchEnd > 0 ? note.pitchEnd / note.pitch : 1;
  Noise noise;
  Band band;
  double phase = 0;  // in turns
  for (std::size_t i = 0; i < count; ++i) {
    double const time = static_cast<double>(i) / kSampleRate;
    double const progress = time / note.duration;
    double const pitch = note.pitch * std::pow(bend, progress);
    double value = instrument.partials.empty() ? band.pass(noise.next(), pitch) : 0;
    for (Partial const& partial : instrument.partials) {
      value += partial.loudness * std::exp(-partial.decay * progress) *
               std::sin(2 * std::numbers::pi * partial.ratio * phase);
    }
    phase += pitch / kSampleRate;
    out[first + i] += note.loudness * envelope(instrument, time, note.duration) * value;
  }
}

void putNumber(std::string& out, std::uint32_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(number >> 8 * i);
}

}  // namespace

std::vector<std::int16_t> render(Sound const& sound) {
  std::vector<double> sum;
  for (Note const& note : sound.notes) add(note, sum);
  double peak = 0;
  for (double const value : sum) peak = std::max(peak, std::abs(value));
  double const gain = peak > 0 ? 32'767 * std::pow(10, sound.peakDb / 20) / peak : 0;
  std::vector<std::int16_t> samples;
  samples.reserve(sum.size());
  for (double const value : sum) samples.push_back(static_cast<std::int16_t>(std::lround(value * gain)));
  return samples;
}

std::string wavFile(std::vector<std::int16_t> const& samples) {
  constexpr std::uint32_t kFormatSize = 16;
  constexpr std::uint32_t kSampleSize = 2;
  auto const dataSize = static_cast<std::uint32_t>(samples.size() * kSampleSize);
  std::string out = "RIFF";
  putNumber(out, 4 + 8 + kFormatSize + 8 + dataSize, 4);
  out += "WAVEfmt ";
  putNumber(out, kFormatSize, 4);
  putNumber(out, 1, 2);  // uncompressed
  putNumber(out, 1, 2);  // channels
  putNumber(out, kSampleRate, 4);
  putNumber(out, kSampleRate * kSampleSize, 4);
  putNumber(out, kSampleSize, 2);
  putNumber(out, 8 * kSampleSize, 2);
  out += "data";
  putNumber(out, dataSize, 4);
  for (std::int16_t const sample : samples) putNumber(out, static_cast<std::uint16_t>(sample), 2);
  return out;
}

}  // namespace nimbara::sounds
