#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tests/support/BusyMachine.h>
#include <tests/tool/Program.h>

#include <iterator>
#include <thread>

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kPhone[] = R"toml(families = ["gsm", "gprs"]
[identity]
manufacturer = "Ardent"
model = "A310"
revision = "R3"
capabilities = "+CGSM"
)toml";

struct Case {
  const char* name;
  const char* toml;                    // what the phone above does besides
  std::vector<std::string> arguments;  // of the verb, with "PORT" for the phone
  int status;
  std::vector<std::string> told;       // occur in what is printed
  std::vector<std::string> kept = {};  // do not
};

using Words = std::vector<std::string>;

Case Of(const char* name, const char* toml, Words arguments, int status, Words told,
        Words kept = {}) {
  return {name, toml, std::move(arguments), status, std::move(told), std::move(kept)};
}

const Case kCases[] = {
    Of("a value that the device never tells", "[replies]\n\"AT+CSQ\" = \"(silence)\"",
       {"info", "PORT"}, 0,
       {"Signal          not told", "Coverage        not told", "R3",
        "Ignored         1 command,"}),
    Of("a value ignored in one way and refused in the others",
       "[replies]\n\"AT+GMR\" = \"(silence)\"\n\"AT+CGMR\" = \"ERROR\"\n\"ATI3\" = \"ERROR\"",
       {"info", "PORT", "--json"}, 0, {"\"version\": null", "\"ignored\": 1"}, {"Error"}),
    Of("a value that comes much too late",
       "[replies]\n\"AT+CSQ\" = { text = \"+CSQ: 20,99\", latency = 25000 }", {"info", "PORT"}, 1,
       {"too late", "idle"}, {"Signal"}),
    Of("a probe that is ignored by a slow device",
       "[line]\nlatency = 600\n[replies]\n\"AT+CGEQMIN=?\" = \"(silence)\"", {"detect", "PORT"}, 0,
       {"GSM, GPRS\n", "Ignored         1 command,"}),
    Of("nothing that names the family",
       "[replies]\n\"AT+GCAP\" = \"(silence)\"\n\"AT+CGATT=?\" = \"(silence)\"", {"detect", "PORT"},
       1, {"2 questions without an answer"}, {"UNKNOWN"}),
    Of("no state of the SIM", "[replies]\n\"AT+CMEE=1;+CPIN?\" = \"(silence)\"",
       {"sim", "PORT", "status"}, 1, {"did not answer when it was asked for the state"},
       {"SIM    "}),
    Of("a command that still owes its answer",
       "[replies]\n\"AT+LATE\" = { text = \"x\", latency = 9000 }",
       {"at", "PORT", "AT+LATE", "AT", "--timeout", "1"}, 1,
       {"> AT+LATE\nno answer", "> AT\nnot sent", "--timeout"}),
    Of("a device that leaves between commands", "[[faults]]\nkind = \"hangup\"\nat = 3",
       {"at", "PORT", "AT", "AT", "AT"}, 1, {"> AT\nOK\n> AT\ndevice gone\nkxwan: ", "has left"}),
    Of("a device that leaves while it is read", "[[faults]]\nkind = \"hangup\"\nat = 12",
       {"info", "PORT"}, 1, {"has left"}, {"Manufacturer"}),
    Of("a device that leaves with the PIN",
       "[sim]\nstate = \"pin\"\n[[faults]]\nkind = \"hangup\"\nat = 3",
       {"sim", "PORT", "unlock", "--pin-file", "-"}, 1, {"may have been entered", "has left"}),
};

void Check(const Case& row, const ProgramRun& run) {
  SCOPED_TRACE(row.name);
  const std::string all = run.out + run.err;
  EXPECT_EQ(run.status, row.status) << all;
  for (const std::string& text : row.told) EXPECT_THAT(all, HasSubstr(text));
  for (const std::string& text : row.kept) EXPECT_THAT(all, Not(HasSubstr(text)));
}

// Each waits for answers that do not come, so all run at the same time.
TEST(SilentCommand, IsNoValue) {
  OnABusyMachine([] {
    ProgramRun runs[std::size(kCases)];
    std::vector<std::thread> threads;
    for (size_t i = 0; i < std::size(kCases); ++i) {
      std::vector<std::string> arguments = kCases[i].arguments;
      arguments[1] = SimulatedPort(std::string(kPhone) + kCases[i].toml);
      threads.emplace_back([=, &runs] { runs[i] = RunProgram(arguments, "1234\n"); });
    }
    for (std::thread& thread : threads) thread.join();
    for (size_t i = 0; i < std::size(kCases); ++i) Check(kCases[i], runs[i]);
  });
}

}  // namespace
