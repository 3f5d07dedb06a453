#pragma once

#include <profile/Profile.h>

#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace kxsim {

// How a reply reaches the host.
struct Delivery {
  std::vector<std::string> pieces;  // sent one after the other
  std::chrono::milliseconds pause = {};
  std::chrono::milliseconds pieceGap = {};
  size_t smallestPiece = 0;  // cuts the pieces further; 0 leaves them
  std::chrono::nanoseconds smallestGap = {};
  std::string after;  // an unsolicited line behind the reply
  std::chrono::milliseconds afterPause = {};
  bool flood = false;
  size_t floodBytes = 0;  // 0: without end
  std::string floodText;
  bool hangUp = false;
  int backAfterMs = 0;  // 0: never
};

// Repeatable chance.
class Chance {
 public:
  explicit Chance(uint64_t seed) : engine_(seed) {}
  bool Happens(double rate) { return static_cast<double>(engine_() >> 11) * 0x1p-53 < rate; }
  size_t Below(size_t limit) { return static_cast<size_t>(engine_() % limit); }
  // Rubbish as a line makes it: any byte but those that end a line.
  std::string Noise(size_t count);

 private:
  std::mt19937_64 engine_;
};

// The faults of one device.
class FaultSet {
 public:
  FaultSet(std::vector<Fault> faults, uint64_t seed);

  // Spoils one reply on a line of this speed.
  void Spoil(Delivery& delivery, int bitsPerSecond);
  // The echo cannot be switched off.
  bool EchoStays() const;
  // What bytes sent at the wrong speed come back as; mostly nothing.
  std::string NoiseFor(size_t bytes);

 private:
  std::vector<Fault> faults_;
  Chance chance_;
  int replies_ = 0;
};

}  // namespace kxsim
