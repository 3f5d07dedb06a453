#include <gtest/gtest.h>
#include <simulator/call/DataCall.h>
#include <simulator/line/LineEditor.h>
#include <simulator/modem/Interpreter.h>
#include <tests/support/Host.h>

#include <chrono>
#include <iterator>
#include <random>
#include <string>

namespace kxsim {
namespace {

constexpr int kLines = 20'000;
constexpr int kLinesAPower = 200;

// What a line is made of: grammar, names, numbers at the edges and bytes that nobody types.
const std::string kWords[] = {
    "AT",
    "at",
    "A/",
    "A",
    "T",
    "?",
    "=",
    "=?",
    ";",
    "\"",
    ",",
    " ",
    "&",
    "+",
    "*",
    "#",
    "\b",
    "\x7F",
    "\x18",
    "\n",
    "\xFF",
    "\x80",
    "D",
    "DT*99#",
    "D*99***1#",
    "*",
    "H",
    "O",
    "Z",
    "I",
    "E0",
    "Q1",
    "Q0",
    "V0",
    "V1",
    "X4",
    "&F",
    "&V",
    "&W",
    "S",
    "S3=84",
    "S3=65",
    "S3=0",
    "S5=84",
    "S4=127",
    "S2=255",
    "S12=0",
    "S3=13",
    "S31?",
    "S32?",
    "0",
    "1",
    "-1",
    "127",
    "256",
    "2147483647",
    "2147483648",
    "99999999999999999999",
    "+CSQ",
    "+CBC",
    "+CFUN",
    "+CMEE=1",
    "+CMEE=2",
    "+CREG",
    "+CGREG=2",
    "+COPS=3,2",
    "+COPS=?",
    "+CPIN",
    "+CPIN=1234",
    "+CLCK=\"SC\",",
    "+CPWD=\"SC\",",
    "+CGATT=",
    "+CGDCONT=1,\"IP\",\"a\"",
    "+CGDCONT?",
    "+CGQMIN=1",
    "+CGEQREQ",
    "+CSCS",
    "+CNMI=1,1",
    "$QCMDR=1",
    "+IPR=",
    "+IPR=0",
    "+GMI",
    "+GMM",
    "+CGSN",
    "+CIMI",
    "+CNUM",
    "+GCAP",
    "+FCLASS",
    std::string(1, '\0'),
    std::string(3000, '9'),
};

std::string RandomLine(std::mt19937& chance) {
  std::string line = chance() % 4 == 0 ? "" : "AT";
  for (size_t words = chance() % 8; words > 0; --words) {
    line += chance() % 8 == 0 ? std::string(1, static_cast<char>(chance() % 256))
                              : kWords[chance() % std::size(kWords)];
  }
  return line;
}

// Everything that a device does with a line, without a terminal.
class Modem {
 public:
  explicit Modem(const Profile& profile) : interpreter_(profile, call_) {}

  // The answers to what is typed, together.
  std::string Type(const std::string& bytes) {
    std::string answers;
    for (const char byte : bytes) {
      const auto& registers = interpreter_.State().settings.registers;
      editor_.endOfLine = static_cast<char>(registers[kEndOfLine]);
      editor_.backspace = static_cast<char>(registers[kBackspace]);
      if (const std::optional<std::string> line = editor_.Feed(byte)) answers += Answer(*line);
    }
    return answers;
  }
  char EndOfLine() const {
    return static_cast<char>(interpreter_.State().settings.registers[kEndOfLine]);
  }
  void PowerUp() {
    call_.End();
    editor_.Clear();
    interpreter_.PowerUp();
  }

 private:
  std::string Answer(const std::string& line) {
    const Outcome outcome = interpreter_.Execute(line);
    std::string answer = interpreter_.Spoken(outcome);
    const bool quiet = interpreter_.State().settings[kQuiet] != 0;
    EXPECT_EQ(answer.empty(), quiet && outcome.text.empty()) << testing::PrintToString(line);
    if (outcome.call == CallAction::kConnect) call_.Connect('+', std::chrono::milliseconds(0));
    if (outcome.call == CallAction::kResume) call_.Resume();
    return answer;
  }

  Loop loop_;
  DataCall call_{loop_, "", {[](const std::string&) {}, [] {}, [] {}}};
  Interpreter interpreter_;
  LineEditor editor_;
};

// Whatever is typed, each line gets an answer, and a device that is started anew is as before.
TEST(Interpreter, AnswersEveryLine) {
  for (const char* families : {"[\"gsm\", \"gprs\"]", "[\"cdma\", \"qualcomm\"]", "[]"}) {
    SCOPED_TRACE(families);
    const Profile profile = ProfileOf("families = " + std::string(families) +
                                      "\n[identity]\nmodel = \"X\"\n[replies]\n\"AT+L*\" = \"L\"");
    Modem modem(profile);
    std::mt19937 chance(1);
    for (int i = 1; i <= kLines; ++i) {
      modem.Type(RandomLine(chance) + modem.EndOfLine());
      if (i % kLinesAPower != 0) continue;
      modem.PowerUp();
      ASSERT_EQ(modem.Type("AT+GMM\r"), "\r\nX\r\n\r\nOK\r\n");
    }
  }
}

}  // namespace
}  // namespace kxsim
