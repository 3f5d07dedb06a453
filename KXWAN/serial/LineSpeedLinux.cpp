#include <KXWAN/serial/LineSpeedPrivate.h>

#include <KXWAN/serial/SpeedNumberPrivate.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace kxwan {
namespace {

struct Speed {
  unsigned long bitsPerSecond;
  speed_t code;
};

// Without the hang-up speed 0.
constexpr Speed kSpeeds[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},
    {150, B150},         {200, B200},         {300, B300},         {600, B600},
    {1200, B1200},       {1800, B1800},       {2400, B2400},       {4800, B4800},
    {9600, B9600},       {19200, B19200},     {38400, B38400},     {57600, B57600},
    {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000},
    {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
    {3500000, B3500000}, {4000000, B4000000},
};

template <typename Field>
const Speed* Find(Field Speed::*field, Field value) {
  const Speed* row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                  [&](const Speed& speed) { return speed.*field == value; });
  return row != std::end(kSpeeds) ? row : nullptr;
}

}  // namespace

// cfsetspeed takes a speed's code for the speed itself, so that 13 would set 9600.
int SetLineSpeed(struct termios& attributes, unsigned long speed) {
  const Speed* row = Find(&Speed::bitsPerSecond, speed);
  if (row != nullptr) return cfsetspeed(&attributes, row->code);
  errno = EINVAL;
  return -1;
}

// A driver may put what its clock really gives, 115384 for 115200, beside the code. So the number
// counts only where the code says nothing.
int GetLineSpeed(int fd, unsigned long* speed) {
  struct termios attributes = {};
  if (tcgetattr(fd, &attributes) == -1) return -1;
  const Speed* row = Find(&Speed::code, cfgetispeed(&attributes));
  if (row == nullptr) return GetSpeedNumber(fd, speed);
  *speed = row->bitsPerSecond;
  return 0;
}

}  // namespace kxwan
