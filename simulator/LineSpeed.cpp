#include <simulator/LineSpeed.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

struct Row {
  speed_t constant;
  int bitsPerSecond;
};

constexpr Row kSpeeds[] = {
    {B300, 300},       {B600, 600},       {B1200, 1200},     {B2400, 2400},   {B4800, 4800},
    {B9600, 9600},     {B19200, 19200},   {B38400, 38400},   {B57600, 57600}, {B115200, 115200},
    {B230400, 230400}, {B460800, 460800}, {B921600, 921600},
};

}  // namespace

int BitsPerSecond(speed_t constant) {
  const Row* found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                  [=](const Row& row) { return row.constant == constant; });
  return found == std::end(kSpeeds) ? 0 : found->bitsPerSecond;
}

bool IsLineSpeed(int bitsPerSecond) {
  return std::any_of(std::begin(kSpeeds), std::end(kSpeeds),
                     [=](const Row& row) { return row.bitsPerSecond == bitsPerSecond; });
}

}  // namespace kxsim
