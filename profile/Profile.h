#pragma once

#include <profile/Failure.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kxsim {

// What the device sends for one command. Nothing at all when text, result and raw are empty.
struct Answer {
  std::string text = {};              // information text, its lines parted by "\n"
  std::string result = "OK";          // the final result
  std::vector<std::string> raw = {};  // pieces sent byte for byte in place of text and result
  int latencyMs = 0;                  // before the first byte
  int gapMs = 0;                      // between the pieces of raw
  bool operator==(const Answer&) const = default;
};

// A command line and its answers: given one after the other, the last one for ever after.
// A command that ends in "*" stands for all that begin like it.
struct Reply {
  std::string command;
  std::vector<Answer> answers;
};

// A value from that second on.
struct Step {
  int second = 0;
  int value = 0;
};

// The serial line and the form of everything that the device sends on it.
struct LineSettings {
  int baud = 19200;         // the speed at which the device answers
  std::vector<int> speeds;  // what AT+IPR= takes; just baud when empty
  bool autobaud = false;    // answers at every speed of the list, or at any without a list
  bool moves = true;        // false: says OK to AT+IPR= and stays where it is
  bool echo = true;
  int latencyMs = 0;             // before every reply
  std::string lineEnd = "\r\n";  // some devices send "\r\r\n"
  bool nulBytes = false;         // a NUL in front of every reply
};

// Texts that name the device. A command whose text is empty is unknown to the device.
struct Identity {
  std::string manufacturer;
  std::string model;
  std::string revision;
  std::string serial;
  std::string capabilities;  // behind "+GCAP: "
  std::string imsi;
  std::string number;
  bool prefix = false;                             // "+GMM: name" where most answer "name"
  bool quotes = false;                             // the name in quotes
  std::vector<std::pair<int, std::string>> pages;  // ATI0 to ATI9
};

enum class SimState { kNone, kReady, kPin, kPuk, kFailure };

struct SimSettings {
  SimState state = SimState::kReady;
  std::string pin = "1234";
  std::string puk = "12345678";
  int pinTries = 3;
  int pukTries = 10;
  bool lock = true;           // the card asks for its PIN at the next start
  bool stateAsError = false;  // +CPIN? reports a locked card as an equipment error
  int pinLength = 8;
};

struct RadioSettings {
  bool on = true;        // false: ERROR to everything until AT+CFUN=1
  int registration = 1;  // as +CREG gives it
  std::string operatorName = "Testnet";
  std::string operatorCode = "00101";
  std::string area = "0001";  // where it is registered, told with AT+CREG=2
  std::string cell = "0001";
  std::vector<Step> signal = {{0, 20}};   // 0 to 31, or 99
  std::vector<Step> battery = {{0, 80}};  // percent
  int batteryStatus = 0;
  int service = 1;  // as +CAD gives it
};

struct PacketSettings {
  bool attached = true;
  bool refuseAttach = false;
  int attachSeconds = 0;
  std::vector<std::pair<int, std::string>> contexts;      // defined from the start
  std::vector<std::string> qos = {"+CGQMIN", "+CGQREQ"};  // the commands that it accepts
};

// Something that goes wrong: at the n-th reply, or by chance at a rate.
struct Fault {
  std::string kind;
  int at = 0;         // the n-th command; 0 for any
  double rate = 1.0;  // the chance for each command, or for each byte
  int bytes = 0;
  int ms = 0;
  std::string text;
};

// What a host should make of the device. Keys that are not given are not compared.
struct Expectation {
  std::optional<std::string> platform, manufacturer, model, capabilities, coverage, version, dial,
      propertiesType;
  std::optional<int> baud, fastBaud, signal, battery, lastError, sim, pinLength;
  std::optional<int> openBaud;                            // the speed that it is opened for
  std::optional<std::vector<std::string>> open, prepare;  // the commands sent
  std::optional<bool> opens;
};

// All there is to know about one device.
struct Profile {
  std::string name;
  std::string description;
  bool scripted = false;              // knows the replies below and nothing else
  std::vector<std::string> families;  // built-in commands: gsm, gprs, cdma, qualcomm
  LineSettings line;
  Identity identity;
  SimSettings sim;
  RadioSettings radio;
  PacketSettings packet;
  std::vector<Reply> replies;
  std::vector<Fault> faults;
  Expectation expect;
};

// Reads an answer in its short form: information text with "OK" implied behind it; a final result
// alone or as the last line; "(silence)"; or "(raw)" and the bytes to send.
Answer ParseAnswer(std::string_view text);

// Adds a reply. The answers of one command are given in the order in which they were added.
void AddReply(Profile& profile, const std::string& command, Answer answer);

// A device that knows these rows and ATE0V1 only, answers at any speed and has its echo off.
Profile ScriptedProfile(const std::vector<std::pair<std::string, std::string>>& rows);

// A failure names the file, the line, and what was expected.
Result ParseProfile(std::string_view toml, const std::string& fileName, Profile& profile);
Result LoadProfile(const std::string& nameOrPath, Profile& profile);

// The text of a profile that ParseProfile reads back as the same device.
std::string FormatProfile(const Profile& profile);

}  // namespace kxsim
