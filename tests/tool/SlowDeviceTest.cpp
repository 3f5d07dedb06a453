#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <profile/Profile.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/Host.h>
#include <tests/tool/Program.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <thread>

namespace {

using testing::HasSubstr;

// One of each family, and what is particular: a PIN, a card at a speed of its own, a radio that is
// off and refuses everything, and names that another question gives.
constexpr const char* kProfiles[] = {
    "gprs-card-radio-off", "gprs-phone-with-pin", "gsm-phone-9600", "gprs-edge-phone",
    "edge-card-57600",     "umts-merlin-u",       "cdma-phone",     "cdma-1xrtt-card",
    "evdo-reva-card",      "tdma-nokia-7160",     "iden-phone",     "gprs-card-slow",
    "sony-ericsson-gc85",
};

// "PORT" stands for the device.
struct Verb {
  std::vector<std::string> arguments;
  std::string input = {};
};

const Verb kVerbs[] = {
    {{"info", "PORT", "--json"}},
    {{"prepare", "PORT", "--apn", "internet", "--json"}},
    {{"detect", "PORT", "--json"}},
    {{"sim", "PORT", "status", "--json"}},
    {{"sim", "PORT", "unlock", "--pin-file", "-", "--json"}, "1234\n"},
};

// How a device is slow.
struct Slowness {
  const char* name;
  int latencyMs;
  int lateMs;     // of every tenth reply
  bool mayFail;   // with a sentence and exit status 1
  size_t atOnce;  // rows; they mostly wait
  std::string leavesOut = {};
};

void PrintTo(const Slowness& slowness, std::ostream* out) { *out << slowness.name; }

struct Row {
  std::string name;
  const Verb* verb;
  std::string promptPort;
  std::string slowPort;
  ProgramRun prompt = {};
  ProgramRun slow = {};
};

ProgramRun RunVerb(const Verb& verb, const std::string& port) {
  std::vector<std::string> arguments = verb.arguments;
  std::replace(arguments.begin(), arguments.end(), std::string("PORT"), port);
  return RunProgram(arguments, verb.input);
}

void SlowDown(kxsim::Profile& profile, const Slowness& slowness) {
  constexpr int kReplies = 400;  // more than any verb takes
  profile.line.latencyMs = slowness.latencyMs;
  for (int reply = 10; slowness.lateMs > 0 && reply < kReplies; reply += 10) {
    kxsim::Fault fault;
    fault.kind = "late";
    fault.at = reply;
    fault.ms = slowness.lateMs;
    profile.faults.push_back(fault);
  }
}

void AddRows(const char* name, const Slowness& slowness, std::vector<Row>& rows) {
  kxsim::Profile profile = ProfileNamed(name);
  const std::string prompt = SimulatedPort(kxsim::FormatProfile(profile));
  SlowDown(profile, slowness);
  const std::string slow = SimulatedPort(kxsim::FormatProfile(profile));
  for (const Verb& verb : kVerbs) {
    const bool takesPin = profile.sim.state == kxsim::SimState::kPin;
    if (!verb.input.empty() && !takesPin) continue;
    rows.push_back({name + (" " + verb.arguments[0]), &verb, prompt, slow});
  }
}

void RunRows(std::vector<Row>& rows, size_t atOnce) {
  std::atomic<size_t> next = 0;
  std::vector<std::thread> workers;
  for (size_t i = 0; i < atOnce; ++i) {
    workers.emplace_back([&] {
      for (size_t at = next++; at < rows.size(); at = next++) {
        rows[at].prompt = RunVerb(*rows[at].verb, rows[at].promptPort);
        rows[at].slow = RunVerb(*rows[at].verb, rows[at].slowPort);
      }
    });
  }
  for (std::thread& worker : workers) worker.join();
}

class SlowDevice : public testing::TestWithParam<Slowness> {};

// The whole object counts, and so does the exit status.
TEST_P(SlowDevice, IsReadLikeAPromptOneOrNotAtAll) {
  OnABusyMachine([] {
    std::vector<Row> rows;
    for (const char* name : kProfiles) {
      if (name != GetParam().leavesOut) AddRows(name, GetParam(), rows);
    }
    RunRows(rows, GetParam().atOnce);
    size_t same = 0;
    for (const Row& row : rows) {
      SCOPED_TRACE(row.name);
      ASSERT_FALSE(row.prompt.out.empty());
      if (row.slow.out == row.prompt.out && row.slow.status == row.prompt.status) {
        ++same;
        continue;
      }
      EXPECT_TRUE(GetParam().mayFail) << row.slow.out << row.prompt.out;
      EXPECT_EQ(row.slow.status, 1) << row.slow.out << row.prompt.out;
      EXPECT_THAT(row.slow.err, HasSubstr("kxwan: ")) << row.slow.out;
    }
    EXPECT_GT(same, rows.size() / 2) << "a tool that tells nothing is never wrong";
  });
}

// An ordinary command is given 1.5 seconds by the classic operations, so that the last of these is
// too late for each of them. A device that refuses everything takes 50 seconds there, as against
// 28, and is left out for that alone.
const Slowness kSlownesses[] = {
    {"Latency600", 600, 0, false, 24},
    {"EveryTenthLate", 0, 3000, false, 24},
    {"Latency1700", 1700, 0, true, 54, "gprs-card-radio-off"},
};

INSTANTIATE_TEST_SUITE_P(Each, SlowDevice, testing::ValuesIn(kSlownesses),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
