#include <simulator/modem/ModemState.h>

#include <algorithm>

namespace kxsim {

Settings FactorySettings(const Profile& profile) {
  Settings settings;
  settings[kEcho] = profile.line.echo ? 1 : 0;
  settings.registers[kEscapeCharacter] = '+';
  settings.registers[kEndOfLine] = '\r';
  settings.registers[kLineFeed] = '\n';
  settings.registers[kBackspace] = '\b';
  settings.registers[kGuardTime] = 50;
  return settings;
}

ModemState::ModemState(const Profile& its, DataCall& itsCall)
    : profile(&its),
      call(&itsCall),
      settings(FactorySettings(its)),
      kept(settings),
      card(its.sim),
      awake(its.radio.on),
      speed(its.line.autobaud ? 0 : its.line.baud),
      attached(its.packet.attached),
      contexts(its.packet.contexts.begin(), its.packet.contexts.end()) {}

int ModemState::At(const std::vector<Step>& steps) const {
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(Loop::Clock::now() - start).count();
  int value = 0;
  for (const Step& step : steps) {
    if (step.second <= seconds) value = step.value;
  }
  return value;
}

bool ModemState::Has(const std::string& family) const {
  const std::vector<std::string>& families = profile->families;
  return std::find(families.begin(), families.end(), family) != families.end();
}

EquipmentError ModemState::Obstacle() const {
  // Only devices of the GSM family need a card.
  return Has("gsm") || Has("gprs") ? card.Obstacle() : kNoError;
}

int ModemState::Registration() const {
  return functionality == 1 && Obstacle() == kNoError ? profile->radio.registration : 0;
}

bool ModemState::Registered() const {
  return Registration() == kHomeNetwork || Registration() == kRoaming;
}

}  // namespace kxsim
