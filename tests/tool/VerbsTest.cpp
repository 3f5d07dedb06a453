#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <tests/tool/Program.h>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

// A phone with an escape sequence in its name that wants its PIN and takes another context than it
// dials.
constexpr char kPhone[] = R"toml(scripted = true
[line]
baud = 115200
[replies]
"AT+GCAP" = "+GCAP: +CGSM"
"AT+GMI" = "Ardent"
"AT+GMM" = "A\u001b[31m\u007F"
"AT+GMR" = "R3"
"AT+CGATT=?" = "+CGATT: (0,1)"
"AT+CGATT?" = "+CGATT: 1"
"AT+CGDCONT=3,\"IP\",\"internet\"" = "OK"
"AT+CGDCONT=3,\"IP\",\"refused\"" = "ERROR"
"AT+CGQMIN=3,0,0,0,0,0;+CGQREQ=3,0,0,0,0,0" = "OK"
"AT+CMEE=1;+CPIN?" = ["+CPIN: SIM PIN", "+CPIN: SIM PIN"]
"AT+CPIN=\"1234\"" = "OK"
"AT+CPIN=\"9999\"" = "+CME ERROR: 16"
"AT+CLCK=\"SC\",0,\"1234\"" = "OK"
"AT+CPWD=?" = "+CPWD: (\"SC\",8)"
"AT+CSQ" = "+CSQ: 31,99"
"AT+CBC" = "+CBC: 0,85,3900"
"AT+CREG?" = "+CREG: 0,5"
"AT+CNUM" = "+CME ERROR: 22"
"AT+CRAW" = "first\nsecond"
)toml";
constexpr char kBlocked[] = R"toml(scripted = true
[line]
baud = 115200
[replies]
"AT+CMEE=1;+CPIN?" = ["+CME ERROR: 12", "+CPIN: READY"]
"AT+CPIN=\"12345678\",\"4321\"" = "OK"
)toml";

struct Call {
  const char* name;
  std::vector<std::string> arguments;  // "PHONE" and "BLOCKED" stand for the devices above
  std::string input;
  int status;
  std::vector<std::string> out;  // all of them occur
  std::vector<std::string> err;
};

using Words = std::vector<std::string>;

Call Of(const char* name, Words arguments, const char* input, int status, Words out, Words err) {
  return {name, std::move(arguments), input, status, std::move(out), std::move(err)};
}

const Call kCalls[] = {
    Of("identity", {"detect", "PHONE"}, "", 0,
       {"GSM, GPRS\n", "Ardent\n", R"(A\x1B[31m\x7F)", "115200 bit/s"}, {}),
    Of("commands", {"at", "PHONE", "AT+CRAW", "AT+CSQ"}, "", 0,
       {"> AT+CRAW\nfirst\nsecond\nOK\n> AT+CSQ\n+CSQ: 31,99\nOK\n"}, {}),
    Of("refused commands", {"at", "PHONE", "AT+FOO", "AT+CNUM", "AT"}, "", 1,
       {"> AT+FOO\nERROR\n> AT+CNUM\nerror 22\n> AT\n"}, {"OK to AT+FOO, AT+CNUM"}),
    Of("the speed as given, and none there",
       {"at", "PHONE", "AT", "--speed", "9600", "--timeout", "1"}, "", 1, {"no answer"}, {"AT"}),
    Of("a speed that no line has", {"at", "PHONE", "AT", "--speed", "12345"}, "", 2, {}, {"12345"}),
    Of("a command in two lines", {"at", "PHONE", "AT\rATD1"}, "", 2, {}, {"no command"}),
    Of("the whole record", {"info", "PHONE"}, "", 0,
       {"R3\n", "GPRS Data\n", "99 %\n", "85 %\n", "3900 mV\n", "registered, roaming\n"}, {}),
    Of("readied", {"prepare", "PHONE", "--apn", "internet"}, "", 0, {"*99***3#", "115200"}, {}),
    Of("a refused context", {"prepare", "PHONE", "--apn", "refused"}, "", 1, {},
       {"103", "access point"}),
    Of("no access point", {"prepare", "PHONE"}, "", 2, {}, {"--apn"}),
    Of("an impossible access point", {"prepare", "/dev/none", "--apn", "a\"b"}, "", 2, {},
       {"quote"}),
    Of("an unknown type", {"prepare", "/dev/none", "--type", "GPRS, gsm"}, "", 2, {}, {"\"gsm\""}),
    Of("type as given", {"prepare", "PHONE", "--type", "TDMA"}, "", 0, {"TDMA"}, {}),
    Of("state of the SIM", {"sim", "PHONE", "status"}, "", 0, {"needs its PIN", "8 digits"}, {}),
    Of("a PIN", {"sim", "PHONE", "unlock", "--pin-file", "-"}, "1234\r\n", 0, {}, {}),
    Of("a PIN for good", {"sim", "PHONE", "unlock", "--save", "--pin-file", "0"}, "1234", 0,
       {"not ask"}, {}),
    Of("a wrong PIN", {"sim", "PHONE", "unlock", "--pin-file", "-"}, "9999\n", 1, {},
       {"PIN was not accepted", "every try counts"}),
    Of("an impossible PIN", {"sim", "/dev/none", "unlock", "--pin-file", "-"}, "12a4\n", 2, {},
       {"4 to 8 digits"}),
    Of("no PIN", {"sim", "/dev/none", "unlock", "--pin-file", "-"}, "", 2, {}, {"no PIN"}),
    Of("no terminal to ask for it", {"sim", "/dev/none", "unlock"}, "1234\n", 2, {},
       {"--pin-file"}),
    Of("a PUK that is not asked for", {"sim", "PHONE", "unblock", "--pin-file", "-"},
       "12345678\n4321\n", 1, {}, {"does not ask for its PUK"}),
    Of("a PUK", {"sim", "BLOCKED", "unblock", "--pin-file", "-"}, "12345678\n4321\n", 0, {"ready"},
       {}),
    Of("an impossible PUK", {"sim", "/dev/none", "unblock", "--pin-file", "-"}, "1234567\n4321\n",
       2, {}, {"8 digits"}),
    Of("a PIN for a blocked card", {"sim", "BLOCKED", "unlock", "--pin-file", "-"}, "1234\n", 1, {},
       {"does not ask for its PIN", "PUK"}),
    Of("a port that is not there", {"detect", "/dev/none"}, "", 2, {}, {"no port \"/dev/none\""}),
    Of("no port", {"detect", ""}, "", 2, {}, {"no port"}),
    Of("an endless path", {"detect", std::string(5000, 'x')}, "", 2, {}, {"no port"}),
    Of("a file", {"detect", "/etc/passwd"}, "", 2, {}, {"not a serial port"}),
    Of("a device that is no tty", {"detect", "/dev/null"}, "", 2, {}, {"not a serial port"}),
    Of("an unknown simulated device", {"detect", "sim:none"}, "", 2, {}, {"gprs-phone-with-pin"}),
    Of("a profile that is not there", {"detect", "sim:/none.toml"}, "", 2, {}, {"/none.toml"}),
    Of("no verb", {}, "", 2, {}, {"kxwan --help"}),
    Of("an unknown verb", {"frob"}, "", 2, {}, {"frob"}),
    Of("help", {"at", "--help"}, "", 0, {"Example:"}, {}),
    Of("version", {"--version"}, "", 0, {"1."}, {}),
};

std::vector<std::string> WithDevices(std::vector<std::string> arguments) {
  for (std::string& argument : arguments) {
    if (argument == "PHONE") argument = SimulatedPort(kPhone);
    if (argument == "BLOCKED") argument = SimulatedPort(kBlocked);
  }
  return arguments;
}

TEST(Verbs, DoWhatTheyAreToldOrSayWhyNot) {
  for (const Call& row : kCalls) {
    SCOPED_TRACE(row.name);
    const ProgramRun run = RunProgram(WithDevices(row.arguments), row.input);
    EXPECT_EQ(run.status, row.status) << run.out << run.err;
    for (const std::string& text : row.out) EXPECT_THAT(run.out, HasSubstr(text));
    for (const std::string& text : row.err) EXPECT_THAT(run.err, HasSubstr(text));
    EXPECT_EQ(run.err.empty(), row.status == 0) << run.err;
  }
}

// Every outcome is one object, with the same exit status.
TEST(Verbs, GiveOneJsonObject) {
  for (const Call& row : kCalls) {
    if (row.name == std::string("help") || row.name == std::string("version")) continue;
    SCOPED_TRACE(row.name);
    std::vector<std::string> arguments = WithDevices(row.arguments);
    arguments.emplace_back("--json");
    const ProgramRun run = RunProgram(arguments, row.input);
    EXPECT_EQ(run.status, row.status) << run.out << run.err;
    const json object = json::parse(run.out, nullptr, false);
    ASSERT_TRUE(object.is_object()) << run.out;
    EXPECT_EQ(object["ok"], row.status == 0);
    EXPECT_EQ(object.contains("error"), row.status != 0);
    EXPECT_THAT(run.out, Not(testing::ContainsRegex("[\x01-\x09\x0b-\x1f\x7f]")));
  }
}

// No signal ends the program: a port that it has open is given back.
TEST(Verbs, SayThatNobodyReadsTheirOutput) {
  for (const char* form : {"detect", "info"}) {
    const ProgramRun run = RunWithoutReader({form, SimulatedPort(kPhone)});
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.status, 1);
  }
}

TEST(Demo, DoesEveryStepForEveryDevice) {
  const ProgramRun run = RunProgram({"demo", "--json"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  const json object = json::parse(run.out, nullptr, false);
  ASSERT_TRUE(object.is_object()) << run.out;
  std::set<std::string> devices;
  for (const json& step : object["steps"]) {
    devices.insert(step["device"]);
    EXPECT_TRUE(step["ok"]) << step;
  }
  EXPECT_EQ(devices.size(), 3U);
}

TEST(Secrets, AreTypedUnseen) {
  bool echoes = false;
  const ProgramRun unlocked =
      RunOnTerminal({"sim", SimulatedPort(kPhone), "unlock"}, {{"PIN: ", "1234\n"}}, echoes);
  EXPECT_EQ(unlocked.status, 0) << unlocked.out;
  EXPECT_THAT(unlocked.out, Not(HasSubstr("1234")));

  const ProgramRun differing = RunOnTerminal(
      {"sim", SimulatedPort(kBlocked), "unblock"},
      {{"PUK: ", "12345678\n"}, {"New PIN: ", "4321\n"}, {"again: ", "4322\n"}}, echoes);
  EXPECT_EQ(differing.status, 2);
  EXPECT_THAT(differing.out, HasSubstr("not the same"));
}

TEST(Secrets, LeaveTheTerminalAsItWasWhenInterrupted) {
  bool echoes = false;
  const ProgramRun run =
      RunOnTerminal({"sim", "/dev/none", "unlock"}, {{"PIN: ", "12\x03"}}, echoes);
  EXPECT_EQ(run.signal, SIGINT);
  EXPECT_TRUE(echoes);
}

}  // namespace
