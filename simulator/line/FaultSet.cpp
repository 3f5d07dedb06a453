#include <profile/Faults.h>
#include <simulator/line/FaultSet.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view kStuckEcho = "echo";
constexpr std::string_view kNoise = "noise";
constexpr int kBitsPerByte = 10;  // with start and stop bit
constexpr int kUsualSpeed = 19200;

// What a fault does to a reply.
struct Spoiling {
  const Fault& fault;
  Delivery& delivery;
  Chance& chance;
  int bitsPerSecond;
};

std::string NoiseOrText(const Spoiling& it) {
  return it.fault.text.empty() ? it.chance.Noise(static_cast<size_t>(it.fault.bytes))
                               : it.fault.text;
}

std::string UnsolicitedLine(const Fault& fault) { return "\r\n" + fault.text + "\r\n"; }

void InPieces(const Spoiling& it) {
  it.delivery.smallestPiece = static_cast<size_t>(it.fault.bytes);
  it.delivery.smallestGap = milliseconds(it.fault.ms);
}

void AtPace(const Spoiling& it) {
  const int speed = it.bitsPerSecond > 0 ? it.bitsPerSecond : kUsualSpeed;
  it.delivery.smallestPiece = 1;
  it.delivery.smallestGap = std::chrono::nanoseconds(std::chrono::seconds(kBitsPerByte)) / speed;
}

void Late(const Spoiling& it) { it.delivery.pause += milliseconds(it.fault.ms); }

void Lost(const Spoiling& it) { it.delivery.pieces.clear(); }

void DropBytes(const Spoiling& it) {
  for (std::string& piece : it.delivery.pieces) {
    std::erase_if(piece, [&](char) { return it.chance.Happens(it.fault.rate); });
  }
}

void FlipBits(const Spoiling& it) {
  for (std::string& piece : it.delivery.pieces) {
    for (char& byte : piece) {
      if (it.chance.Happens(it.fault.rate)) byte ^= static_cast<char>(1U << it.chance.Below(8));
    }
  }
}

void RubbishInFront(const Spoiling& it) {
  it.delivery.pieces.insert(it.delivery.pieces.begin(), NoiseOrText(it));
}

void LineBehind(const Spoiling& it) {
  it.delivery.after += UnsolicitedLine(it.fault);
  it.delivery.afterPause = milliseconds(it.fault.ms);
}

// Between two lines of a reply, or in front of one that has no two lines.
void LineInside(const Spoiling& it) {
  if (it.delivery.pieces.empty()) return;
  std::string& piece = it.delivery.pieces.front();
  const size_t parting = piece.find("\r\n\r\n");
  piece.insert(parting == std::string::npos ? 0 : parting + 2, UnsolicitedLine(it.fault));
}

void Flood(const Spoiling& it) {
  it.delivery.flood = true;
  it.delivery.floodBytes = static_cast<size_t>(it.fault.bytes);
  it.delivery.floodText = UnsolicitedLine(it.fault);
}

// In place of the reply: whether a host still gets a reply in front of a hang-up is left to chance.
void HangUp(const Spoiling& it) {
  it.delivery.pieces.clear();
  it.delivery.hangUp = true;
  it.delivery.backAfterMs = it.fault.ms;
}

// How a kind is played; the others show elsewhere than in a reply.
struct Play {
  std::string_view kind;
  void (*spoil)(const Spoiling& it);
};

constexpr Play kPlays[] = {
    {"pieces", InPieces},
    {"pace", AtPace},
    {"late", Late},
    {"lost", Lost},
    {"drop", DropBytes},
    {"flip", FlipBits},
    {"rubbish", RubbishInFront},
    {"between", LineBehind},
    {"inside", LineInside},
    {"flood", Flood},
    {"hangup", HangUp},
};

const Play* FindPlay(std::string_view kind) {
  const Play* found = std::find_if(std::begin(kPlays), std::end(kPlays),
                                   [=](const Play& play) { return play.kind == kind; });
  return found == std::end(kPlays) ? nullptr : found;
}

}  // namespace

std::string Chance::Noise(size_t count) {
  std::string noise;
  while (noise.size() < count) {
    const char byte = static_cast<char>(Below(256));
    if (byte != '\r' && byte != '\n') noise += byte;
  }
  return noise;
}

FaultSet::FaultSet(std::vector<Fault> faults, uint64_t seed)
    : faults_(std::move(faults)), chance_(seed) {
  for (Fault& fault : faults_) fault = WithPresets(std::move(fault));
}

void FaultSet::Spoil(Delivery& delivery, int bitsPerSecond) {
  ++replies_;
  for (const Fault& fault : faults_) {
    const Play* play = FindPlay(fault.kind);
    if (play == nullptr || (fault.at != 0 && fault.at != replies_)) continue;
    if (!FindFaultKind(fault.kind)->ratePerByte && !chance_.Happens(fault.rate)) continue;
    play->spoil({fault, delivery, chance_, bitsPerSecond});
  }
}

bool FaultSet::EchoStays() const {
  return std::any_of(faults_.begin(), faults_.end(),
                     [](const Fault& fault) { return fault.kind == kStuckEcho; });
}

std::string FaultSet::NoiseFor(size_t bytes) {
  for (const Fault& fault : faults_) {
    if (fault.kind == kNoise && chance_.Happens(fault.rate)) return chance_.Noise(bytes);
  }
  return "";
}

}  // namespace kxsim
