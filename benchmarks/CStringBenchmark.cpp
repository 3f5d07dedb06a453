// What do appending, finding and formatting cost with the library's text type? std::string doing
// the same in the same run is the measure: read the times as ratios of each pair.

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

constexpr char kPiece[] = "+CSQ: 18,99\r\n";
constexpr int kPieceLength = sizeof kPiece - 1;

// A reply's line, of which the compiler does not know the length.
const char* Piece() {
  const char* piece = kPiece;
  benchmark::DoNotOptimize(piece);
  return piece;
}

// Room is reserved on both sides: growing is the standard type's strength, and a text that outgrows
// its buffer leaves it behind.
void AppendCString(benchmark::State& state) {
  const int pieces = static_cast<int>(state.range(0));
  const char* piece = Piece();
  for ([[maybe_unused]] auto unused : state) {
    kxwan::ScopedText text;
    text.GetBuffer(pieces * kPieceLength);
    for (int i = 0; i < pieces; ++i) text += piece;
    benchmark::DoNotOptimize(text.String());
  }
  state.SetBytesProcessed(state.iterations() * pieces * kPieceLength);
}
BENCHMARK(AppendCString)->Arg(4)->Arg(1000);

void AppendStandard(benchmark::State& state) {
  const int pieces = static_cast<int>(state.range(0));
  const char* piece = Piece();
  for ([[maybe_unused]] auto unused : state) {
    std::string text;
    text.reserve(static_cast<size_t>(pieces) * kPieceLength);
    for (int i = 0; i < pieces; ++i) text += piece;
    benchmark::DoNotOptimize(text.c_str());
  }
  state.SetBytesProcessed(state.iterations() * pieces * kPieceLength);
}
BENCHMARK(AppendStandard)->Arg(4)->Arg(1000);

std::string Reply(int64_t length) { return std::string(static_cast<size_t>(length), 'x') + "OK"; }

void FindCString(benchmark::State& state) {
  const kxwan::ScopedText text(Reply(state.range(0)).c_str());
  for ([[maybe_unused]] auto unused : state) benchmark::DoNotOptimize(text.Find("OK"));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FindCString)->Arg(100)->Arg(100000);

void FindNoCaseCString(benchmark::State& state) {
  const kxwan::ScopedText text(Reply(state.range(0)).c_str());
  for ([[maybe_unused]] auto unused : state) benchmark::DoNotOptimize(text.FindNoCase("ok"));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FindNoCaseCString)->Arg(100)->Arg(100000);

void FindStandard(benchmark::State& state) {
  const std::string text = Reply(state.range(0));
  for ([[maybe_unused]] auto unused : state) benchmark::DoNotOptimize(text.find("OK"));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FindStandard)->Arg(100)->Arg(100000);

void FormatCString(benchmark::State& state) {
  for ([[maybe_unused]] auto unused : state) {
    kxwan::ScopedText text;
    text.Format("AT+CGDCONT=%d,\"IP\",\"%s\"\r", 1, "internet");
    benchmark::DoNotOptimize(text.String());
  }
}
BENCHMARK(FormatCString);

// The standard type has no formatting of its own before std::format: measure, reserve, print.
void FormatStandard(benchmark::State& state) {
  constexpr char kFormat[] = "AT+CGDCONT=%d,\"IP\",\"%s\"\r";
  for ([[maybe_unused]] auto unused : state) {
    const int length = std::snprintf(nullptr, 0, kFormat, 1, "internet");
    std::string text(static_cast<size_t>(length), '\0');
    std::snprintf(text.data(), text.size() + 1, kFormat, 1, "internet");
    benchmark::DoNotOptimize(text.c_str());
  }
}
BENCHMARK(FormatStandard);

}  // namespace
