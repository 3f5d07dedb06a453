#pragma once

#include <profile/Profile.h>
#include <simulator/line/Loop.h>
#include <simulator/modem/Outcome.h>
#include <simulator/modem/SimCard.h>

#include <array>
#include <map>
#include <string>

namespace kxsim {

constexpr int kRegisters = 32;

// The S-registers that the device heeds.
enum Register {
  kAutoAnswer = 0,
  kEscapeCharacter = 2,
  kEndOfLine = 3,
  kLineFeed = 4,
  kBackspace = 5,
  kGuardTime = 12,  // in fiftieths of a second
};

// What ATZ fetches back and AT&W keeps.
struct Settings {
  bool echo = true;       // ATE
  bool verbose = true;    // ATV
  bool quiet = false;     // ATQ
  int connectTexts = 4;   // ATX
  int carrier = 1;        // AT&C
  int terminalReady = 2;  // AT&D
  int flow = 3;           // AT&K
  std::array<int, kRegisters> registers = {};
};

Settings FactorySettings(const Profile& profile);

// Everything about a device that commands read and change.
struct ModemState {
  explicit ModemState(const Profile& its);
  // Everything as at the first start.
  void Reset() { *this = ModemState(*profile); }

  const Profile* profile;
  Settings settings;
  Settings kept;
  SimCard card;

  bool awake;             // false: ERROR to everything until AT+CFUN=1
  int functionality = 1;  // AT+CFUN
  int errorReports = 0;   // AT+CMEE
  int operatorForm = 0;   // AT+COPS=3,
  int speed;              // AT+IPR; 0 when the device takes any
  bool attached;
  std::map<int, std::string> contexts;        // access points
  std::map<std::string, std::string> stored;  // settings that are just kept
  bool online = false;                        // a data call is up
  Loop::Clock::time_point start = Loop::Clock::now();

  // What a script of steps says now.
  int At(const std::vector<Step>& steps) const;
  bool Registered() const;
  bool Has(const std::string& family) const;
  // Why nothing goes over the air; kNoError when it does.
  EquipmentError Obstacle() const;
};

}  // namespace kxsim
