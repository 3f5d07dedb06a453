#include <KXWAN/info/Battery.h>

#include <KXWAN/foundation/Host.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace kxwan {
namespace {

// Connection status of +CBC; 3 is the highest that there is.
constexpr int32_t kOnBattery = 0;
constexpr int32_t kOnExternalPower = 1;
constexpr int32_t kHighestStatus = 3;

// No cell of a device has less, and no percentage is as large.
constexpr int32_t kLeastMillivolts = 1000;

int32_t LevelUnderStatus(int32_t status, int32_t level) {
  if (status == kOnBattery) return level;
  if (status == kOnExternalPower) return level == 0 ? 100 : level;
  return 0;
}

int32_t ReportedLevel(std::string_view numbers) {
  const size_t comma = numbers.rfind(',');
  if (comma == std::string_view::npos) return LevelUnderStatus(ToInt(numbers), 0);
  int32_t status = ToInt(numbers.substr(0, comma));
  int32_t level = ToInt(numbers.substr(comma + 1));
  if (status > kHighestStatus) {
    // Deliberate: some devices report the level first. Only numbers that cannot be a status show
    // it, so such a device with a nearly empty battery is read the usual way round. Where neither
    // number can be one, the level is 0.
    std::swap(status, level);
  }
  return LevelUnderStatus(status, level);
}

// "3900" and "3.9V" alike; 0 when it is no voltage.
int32_t MillivoltsOf(std::string_view number) {
  const size_t point = number.find('.');
  if (point == std::string_view::npos) {
    const int32_t value = ToInt(number);
    return value >= kLeastMillivolts ? value : 0;
  }
  const int32_t volts = std::clamp(ToInt(number), 0, 1000);
  int32_t millivolts = volts * 1000;
  int32_t place = 100;
  for (char ch : number.substr(point + 1, 3)) {
    if (!IsDigit(ch)) break;
    millivolts += (ch - '0') * place;
    place /= 10;
  }
  return millivolts >= kLeastMillivolts ? millivolts : 0;
}

// One number that is no voltage may be a status or a percentage, two are both.
void TakeSmallNumbers(const int32_t* numbers, int count, BatteryReading& reading) {
  if (count == 0) return;
  int32_t status = numbers[0];
  int32_t percent = count > 1 ? numbers[1] : -1;
  if (status > kHighestStatus && percent <= kHighestStatus) std::swap(status, percent);
  reading.status = status >= 0 && status <= kHighestStatus ? status : -1;
  reading.percent = percent >= 0 && percent <= 100 ? percent : -1;
}

}  // namespace

int32_t BatteryLevelOf(std::string_view answer, int32_t maxStrength) {
  const int32_t level = std::max(ReportedLevel(TextBehind(answer, "CBC:")), 0);
  if (maxStrength <= 0) return level;
  if (level >= maxStrength) return 100;
  return static_cast<int32_t>(static_cast<float>(level) / static_cast<float>(maxStrength) * 100.0F);
}

BatteryReading BatteryReadingOf(std::string_view value) {
  BatteryReading reading = {-1, -1, -1};
  int32_t small[2] = {};
  int smallCount = 0;
  while (!value.empty()) {
    const size_t end = std::min(value.find(','), value.size());
    const std::string_view number = Trimmed(value.substr(0, end));
    value.remove_prefix(std::min(end + 1, value.size()));
    const bool isNumber = !number.empty() && IsDigit(number.front());
    const int32_t millivolts = isNumber ? MillivoltsOf(number) : 0;
    if (millivolts > 0) {
      reading.millivolts = millivolts;
    } else if (isNumber && number.find('.') == std::string_view::npos && smallCount < 2) {
      small[smallCount++] = ToInt(number);
    }
  }
  TakeSmallNumbers(small, smallCount, reading);
  return reading;
}

bool ReadBattery(CSModem* modem, BatteryReading& reading) {
  for (const char* command : {"AT+CBC\r", "AT+CBC?\r"}) {
    const BatteryReading told = BatteryReadingOf(QueryValue(modem, command, "+CBC:"));
    if (told.status >= 0 || told.percent >= 0 || told.millivolts >= 0) {
      reading = told;
      return true;
    }
  }
  return false;
}

}  // namespace kxwan

bool GetBatteryLevelFromDevice(CSModem* modem, ModemInfo* info) {
  const char* command = kxwan::ReportsOnExecution(*info) ? "AT+CBC\r" : "AT+CBC?\r";
  const kxwan::Answer answer = kxwan::Exchange(modem, command);
  if (!answer.IsOk()) return false;
  const int maxStrength = GetCustomSetting("MaxBatteryStrength", 0);
  info->dwBatteryLevel = static_cast<uint32_t>(kxwan::BatteryLevelOf(answer.text, maxStrength));
  return true;
}
