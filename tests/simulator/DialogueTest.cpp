#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <tests/support/Host.h>

#include <string>
#include <vector>

namespace kxsim {
namespace {

// What is typed and what must come back, byte for byte.
struct Turn {
  const char* sent;
  const char* answer;
};

struct Dialogue {
  const char* device;
  const char* toml;
  std::vector<Turn> turns;
};

constexpr const char* kOk = "\r\nOK\r\n";
constexpr const char* kError = "\r\nERROR\r\n";

#define ANSWER(text) "\r\n" text "\r\n\r\nOK\r\n"
#define RESULT(text) "\r\n" text "\r\n"

void Play(const Dialogue& dialogue) {
  SCOPED_TRACE(dialogue.device);
  SimulatedDevice device(ProfileOf(dialogue.toml));
  Host host(device.Path());
  for (const Turn& turn : dialogue.turns) {
    EXPECT_EQ(host.Ask(turn.sent, turn.answer), turn.answer) << turn.sent;
  }
}

constexpr const char* kQuiet = "[line]\necho = false\n";

const Dialogue kBasic[] = {
    {"a line as people type it",
     "[identity]\nmodel = \"X\"",
     {{"AT\r", "AT\r\r\nOK\r\n"},
      {"noise\rat\r", "noise\rat\r\r\nOK\r\n"},
      {"AT+GMX\bM\r", "AT+GMX\bM\r\r\nX\r\n\r\nOK\r\n"},
      {"ATE0\r", "ATE0\r\r\nOK\r\n"},
      {"\b\bAT+QQ\x18"
       "AT\r",
       kOk},
      {"AAT\r", kOk},
      {"at + gmm\r", ANSWER("X")},
      {"A/", ANSWER("X")},
      {"AT\b\b\b+GMM\r", ANSWER("X")},
      {"ATZ\r", kOk},
      {"AT\r", "AT\r\r\nOK\r\n"}}},
    {"several commands on a line",
     "[line]\necho = false\n[identity]\nmodel = \"X\"\nmanufacturer = \"Y\"\n",
     {{"ATE0V1Q0X4&C1&D2\r", kOk},
      {"AT+GMI;+GMM\r", "\r\nY\r\n" ANSWER("X")},
      {"ATE0+GMM\r", ANSWER("X")},
      {"AT+GMI;+GMR;+GMM\r", "\r\nY\r\n\r\nERROR\r\n"},
      {"AT+GMI+GMM\r", kError},
      {"ATE2\r", kError},
      {"AT?\r", kError},
      {"AT;\r", kError},
      {"AT+\r", kError}}},
    {"results as the host wants them",
     "[line]\necho = false\n[identity]\nmodel = \"X\"",
     {{"ATV0\r", "0\r"},
      {"AT+GMM\r", "X\r\n0\r"},
      {"AT+NO\r", "4\r"},
      {"ATD5\r", "3\r"},
      {"ATV1Q1\rAT+GMM\r", "\r\nX\r\n"},
      {"ATQ0\r", kOk}}},
    {"registers",
     kQuiet,
     {{"ATS3?S12?\r", "\r\n013\r\n" ANSWER("050")},
      {"ATS0=2S0?\r", ANSWER("002")},
      {"ATS5=42\rAT+NO**\b\r", RESULT("OK") RESULT("ERROR")},
      {"ATS4=33\r", "\r!OK\r!"},
      {"ATS3=36\r", "$!OK$!"},
      {"AT$", "$!OK$!"},
      {"ATS3=128$", "$!ERROR$!"},
      {"ATS99?$", "$!ERROR$!"},
      {"AT&F$", "\r\nOK\r\n"}}},
    {"registers that hold a letter of the prefix",
     kQuiet,
     {{"ATS5=84\r", kOk},
      {"AT+NO\r", kError},
      {"ATS3=84\r", "T\nOKT\n"},
      {"ATT", "T\nOKT\n"},
      {"aTS3=65T", "A\nOKA\n"},
      {"ATS3=13A", kOk}}},
    {"settings that are kept",
     kQuiet,
     {{"ATX1S0=7&W\r", kOk},
      {"AT&FS0?\r", ANSWER("000")},
      {"ATZS0?\r", ANSWER("007")},
      {"AT&V\r", ANSWER("ACTIVE PROFILE:\r\nE0 Q0 V1 X1 &C1 &D2\r\n"
                        "S00:007 S02:043 S03:013 S04:010 S05:008 S12:050")}}},
    {"pages and the form of names",
     "[line]\necho = false\n[identity]\nmodel = \"X\"\nprefix = true\nquotes = true\n"
     "capabilities = \"+CGSM\"\npages = { 0 = \"zero\", 3 = \"a\\nb\" }",
     {{"ATI\r", ANSWER("zero")},
      {"ATI3\r", ANSWER("a\r\nb")},
      {"ATI5\r", kError},
      {"AT+GMM\r", ANSWER("+GMM: \"X\"")},
      {"AT+GMI\r", kError},
      {"AT+GCAP\r", ANSWER("+GCAP: +CGSM")},
      {"AT+CGMM\r", kError}}},
    {"line ends and zeros of its own",
     "[line]\necho = false\nline_end = \"\\r\\r\\n\"\n[identity]\nmodel = \"X\"",
     {{"AT+GMM\r", "\r\r\nX\r\r\n\r\r\nOK\r\r\n"}}},
    {"radio off",
     "[line]\necho = false\n[radio]\non = false\n[replies]\n\"AT+CFUN=1\" = \"on\"",
     {{"ATE0V1\r", kError}, {"AT+CFUN=1\r", ANSWER("on")}, {"ATE0V1\r", kOk}}},
    {"what it lists wins",
     "families = [\"gsm\", \"gprs\"]\n[line]\necho = false\n[packet]\nattached = false\n"
     "[replies]\n\"AT+CSQ\" = [\"+CSQ: 1,1\", \"ERROR\"]\n\"AT+CSQ;+CGATT?\" = \"both\"\n"
     "\"at+cgatt=1\" = \"done\"\n\"AT+X*\" = \"any\"\n\"AT+XY*\" = \"longer\"\n"
     "\"AT+R\" = { raw = [\"a\", \"b\"], gap = 1 }\n\"AT+S\" = { text = \"s\", result = \"\" }",
     {{"AT+CSQ\r", ANSWER("+CSQ: 1,1")},
      {"AT+CSQ\r", kError},
      {"AT+CSQ\r", kError},
      {"AT+CSQ;+CGATT?\r", ANSWER("both")},
      {"AT+CGATT?\r", ANSWER("+CGATT: 0")},
      {"AT+CGATT=1;+CGATT?\r", "\r\ndone\r\n" ANSWER("+CGATT: 1")},
      {"AT+X=\"3\"\r", ANSWER("any")},
      {"AT+XYZ\r", ANSWER("longer")},
      {"AT+R\r", "ab"},
      {"AT+S\r", "\r\ns\r\n"}}},
    {"all script",
     "scripted = true\n[replies]\n\"AT+GCAP\" = \"+GCAP: +CGSM\"\n\"ATI\" = \"(silence)\"",
     {{"AT\r", kError},
      {"ATE0V1\r", kOk},
      {"AT+GCAP\r", ANSWER("+GCAP: +CGSM")},
      {"ATI\rAT+CSQ\r", kError}}},
};

TEST(Dialogue, IsThatOfAModem) {
  for (const Dialogue& dialogue : kBasic) Play(dialogue);
}

#define GSM "families = [\"gsm\", \"gprs\"]\n[line]\necho = false\n"

const Dialogue kSim[] = {
    {"PIN, right at the second try",
     GSM "[sim]\nstate = \"pin\"\n[identity]\nimsi = \"0010\"",
     {{"AT+CPIN?\r", ANSWER("+CPIN: SIM PIN")},
      {"AT+CIMI\r", kError},
      {"AT+CMEE=1;+CIMI\r", RESULT("+CME ERROR: 11")},
      {"AT+CPIN=\"0000\"\r", RESULT("+CME ERROR: 16")},
      {"AT+CREG?;+COPS?\r", "\r\n+CREG: 0,0\r\n" ANSWER("+COPS: 0")},
      {"AT+CMEE=2;+COPS=?\r", RESULT("+CME ERROR: SIM PIN required")},
      {"ATD*99#\r", RESULT("+CME ERROR: SIM PIN required")},
      {"AT+CPIN=\"1234\"\r", kOk},
      {"AT+CPIN?;+CIMI\r", "\r\n+CPIN: READY\r\n" ANSWER("0010")},
      {"AT+CPIN=\"1234\"\r", RESULT("+CME ERROR: operation not allowed")}}},
    {"wrong PINs, then the PUK",
     GSM "[sim]\nstate = \"pin\"\npin_tries = 2\nstate_as_error = true",
     {{"AT+CMEE=1;+CPIN?\r", RESULT("+CME ERROR: 11")},
      {"AT+CPIN=\"1111\"\r", RESULT("+CME ERROR: 16")},
      {"AT+CPIN=\"1111\"\r", RESULT("+CME ERROR: 16")},
      {"AT+CPIN?\r", RESULT("+CME ERROR: 12")},
      {"AT+CPIN=\"1234\"\r", RESULT("+CME ERROR: 12")},
      {"AT+CPIN=\"11111111\",\"4321\"\r", RESULT("+CME ERROR: 16")},
      {"AT+CPIN=\"12345678\",\"12\"\r", RESULT("+CME ERROR: 50")},
      {"AT+CPIN=\"12345678\",\"4321\"\r", kOk},
      {"AT+CLCK=\"SC\",0,\"4321\"\r", kOk}}},
    {"wrong PUKs end it",
     GSM "[sim]\nstate = \"puk\"\npuk_tries = 1",
     {{"AT+CPIN?\r", ANSWER("+CPIN: SIM PUK")},
      {"AT+CPIN=\"11111111\",\"4321\"\r", kError},
      {"AT+CMEE=1;+CPIN?\r", RESULT("+CME ERROR: 13")},
      {"AT+CPIN=\"12345678\",\"4321\"\r", RESULT("+CME ERROR: 13")}}},
    {"the lock and the password",
     GSM "[sim]\npin_length = 12",
     {{"AT+CLCK=\"SC\",2\r", ANSWER("+CLCK: 1")},
      {"AT+CPWD=?\r", ANSWER("+CPWD: (\"SC\",12),(\"P2\",12)")},
      {"AT+CPWD=\"SC\",\"1234\",\"5678\"\r", kOk},
      {"AT+CLCK=\"SC\",0,\"1234\"\r", kError},
      {"AT+CLCK=\"SC\",0,\"5678\"\r", kOk},
      {"AT+CLCK=\"SC\",2\r", ANSWER("+CLCK: 0")},
      {"AT+CPWD=\"SC\",\"5678\",\"1234\"\r", kError},
      {"AT+CLCK=\"PN\",2\r", kError},
      {"AT+CLCK\r", kError}}},
    {"no card",
     GSM "[sim]\nstate = \"none\"",
     {{"AT+CMEE=1;+CPIN?\r", RESULT("+CME ERROR: 10")},
      {"AT+CGATT?\r", RESULT("+CME ERROR: 10")},
      {"AT+CSQ\r", ANSWER("+CSQ: 20,99")}}},
};

TEST(Dialogue, KeepsTheSimCard) {
  for (const Dialogue& dialogue : kSim) Play(dialogue);
}

const Dialogue kRadio[] = {
    {"attach and contexts",
     GSM "[packet]\nattached = false\ncontexts = { 2 = \"two\" }",
     {{"AT+CGATT?;+CGREG?\r", "\r\n+CGATT: 0\r\n" ANSWER("+CGREG: 0,0")},
      {"ATD*99***2#\r", RESULT("NO CARRIER")},
      {"AT+CGATT=1;+CGREG?\r", ANSWER("+CGREG: 0,1")},
      {"AT+CGDCONT=1,\"IP\",\"a,;b\"\r", kOk},
      {"AT+CGDCONT?\r", ANSWER("+CGDCONT: 1,\"IP\",\"a,;b\",\"\",0,0\r\n"
                               "+CGDCONT: 2,\"IP\",\"two\",\"\",0,0")},
      {"AT+CGDCONT=2;+CGDCONT?\r", ANSWER("+CGDCONT: 1,\"IP\",\"a,;b\",\"\",0,0")},
      {"AT+CGDCONT=17,\"IP\"\r", kError},
      {"AT+CGDCONT=1,\"X25\"\r", kError},
      {"ATD*99***2#\r", kError},
      {"AT+CGATT=2\r", kError}}},
    {"quality of service, as far as it is accepted",
     GSM "[packet]\nqos = [\"+CGEQMIN\"]",
     {{"AT+CGQMIN=?\r", kError},
      {"AT+CGEQMIN=3;+CGEQMIN?\r", ANSWER("+CGEQMIN: 3")},
      {"AT+CGEQMIN=1;+CGEQREQ=1\r", kError},
      {"AT+CMEE=1;+CGQMIN=1,0,0,0,0,0\r", RESULT("+CME ERROR: 4")}}},
    {"an attach that is refused",
     GSM "[packet]\nattached = false\nrefuse_attach = true",
     {{"AT+CGATT=1\r", kError}, {"AT+CGATT?\r", ANSWER("+CGATT: 0")}}},
    {"network, signal and battery",
     GSM "[radio]\nsignal = [[0, 7], [1000, 9]]\nbattery = 55\nbattery_status = 1\n"
         "operator = \"Net\"\nregistration = 5\n[identity]\nnumber = \"+1555\"",
     {{"AT+CSQ;+CBC\r", "\r\n+CSQ: 7,99\r\n" ANSWER("+CBC: 1,55")},
      {"AT+CSQ?\r", kError},
      {"AT+CREG=2;+CREG?\r", ANSWER("+CREG: 2,5,\"0001\",\"0001\"")},
      {"AT+CREG=9\r", kError},
      {"AT+COPS?\r", ANSWER("+COPS: 0,0,\"Net\"")},
      {"AT+COPS=3,2;+COPS?\r", ANSWER("+COPS: 0,2,\"00101\"")},
      {"AT+COPS=1,2,\"99999\"\r", kError},
      {"AT+CNUM\r", ANSWER("+CNUM: \"\",\"+1555\",145")},
      {"AT+CFUN=0;+CSQ;+CREG?\r", "\r\n+CSQ: 99,99\r\n" ANSWER("+CREG: 2,0")},
      {"AT+CFUN=7\r", kError},
      {"AT+CSCS=\"IRA\";+CSCS?\r", ANSWER("+CSCS: \"IRA\"")},
      {"AT+CSCS=\"UCS2\"\r", kError},
      {"AT+CMGF=1;+CMGF?\r", ANSWER("+CMGF: 1")},
      {"AT+CNMI=2,1;+CNMI?\r", ANSWER("+CNMI: 2,1")},
      {"AT+CNMI=a\r", kError}}},
    {"CDMA",
     "families = [\"cdma\", \"qualcomm\"]\n[line]\necho = false\n[radio]\nservice = 3\n",
     {{"AT+CSQ?\r", ANSWER("+CSQ: 20,99")},
      {"AT+CAD?\r", ANSWER("+CAD: 3")},
      {"AT$QCMDR=2;$QCQNC=1\r", kOk},
      {"AT$QCMDR?\r", ANSWER("$QCMDR: 2")},
      {"AT$QCMDR=9\r", kError},
      {"AT+CRM=1;+CSO=33\r", kOk},
      {"AT$QCMIP=2\r", kOk},
      {"AT+CMEE=1\r", kError},
      {"ATD*99#\r", RESULT("NO CARRIER")}}},
};

TEST(Dialogue, KeepsRadioAndPacketService) {
  for (const Dialogue& dialogue : kRadio) Play(dialogue);
}

}  // namespace
}  // namespace kxsim
