#include <KXWAN/foundation/DebugLog.h>
#include <gtest/gtest.h>
#include <tests/support/TestLog.h>

#include <cstdio>
#include <sstream>

std::string TakeLog() {
  static long taken = 0;
  std::string text;
  fseek(logFileFD, taken, SEEK_SET);
  for (int ch = fgetc(logFileFD); ch != EOF; ch = fgetc(logFileFD)) {
    text += static_cast<char>(ch);
  }
  taken += static_cast<long>(text.size());
  fseek(logFileFD, 0, SEEK_END);
  return text;
}

std::string WithoutStamps(const std::string& log) {
  constexpr size_t kStamp = sizeof "11:16:26 06:29:35 - " - 1;
  std::istringstream lines(log);
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    text += (line.size() > kStamp ? line.substr(kStamp) : line) + "\n";
  }
  return text;
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  logFileFD = tmpfile();
  return RUN_ALL_TESTS();
}
