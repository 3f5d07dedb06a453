#pragma once

#include <profile/Profile.h>
#include <simulator/call/DataCall.h>
#include <simulator/line/Loop.h>
#include <simulator/modem/Outcome.h>
#include <simulator/modem/SimCard.h>

#include <array>
#include <functional>
#include <map>
#include <string>

namespace kxsim {

constexpr int kRegisters = 32;

// What +CREG gives for a device that is registered.
constexpr int kHomeNetwork = 1;
constexpr int kRoaming = 5;

// The S-registers that the device heeds.
enum Register {
  kAutoAnswer = 0,
  kEscapeCharacter = 2,
  kEndOfLine = 3,
  kLineFeed = 4,
  kBackspace = 5,
  kGuardTime = 12,  // in fiftieths of a second
};

// The numbers that basic commands set.
enum Setting {
  kEcho,           // ATE
  kVerbose,        // ATV
  kQuiet,          // ATQ
  kConnectTexts,   // ATX
  kCarrier,        // AT&C
  kTerminalReady,  // AT&D
  kFlow,           // AT&K
  kSettings
};

// What ATZ fetches back and AT&W keeps.
struct Settings {
  std::array<int, kSettings> values = {1, 1, 0, 4, 1, 2, 3};
  std::array<int, kRegisters> registers = {};

  int& operator[](Setting setting) { return values[setting]; }
  int operator[](Setting setting) const { return values[setting]; }
};

Settings FactorySettings(const Profile& profile);

// Everything about a device that commands read and change.
struct ModemState {
  ModemState(const Profile& its, DataCall& itsCall);
  // Everything as at the first start.
  void Reset() { *this = ModemState(*profile, *call); }

  const Profile* profile;
  DataCall* call;
  Settings settings;
  Settings kept;
  SimCard card;

  bool awake;             // false: ERROR to everything until AT+CFUN=1
  int functionality = 1;  // AT+CFUN
  int errorReports = 0;   // AT+CMEE
  int operatorForm = 0;   // AT+COPS=3,
  int speed;              // AT+IPR; 0 when the device takes any
  bool attached;
  std::map<int, std::string> contexts;                     // access points
  std::map<std::string, std::string, std::less<>> stored;  // settings that are just kept
  Loop::Clock::time_point start = Loop::Clock::now();

  // What a script of steps says now.
  int At(const std::vector<Step>& steps) const;
  // As +CREG gives it; 0 while nothing goes over the air.
  int Registration() const;
  bool Registered() const;
  bool Has(const std::string& family) const;
  // Why nothing goes over the air; kNoError when it does.
  EquipmentError Obstacle() const;
};

}  // namespace kxsim
