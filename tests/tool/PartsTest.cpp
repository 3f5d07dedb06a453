#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/PrivateText.h>
#include <tool/kxwan/Text.h>
#include <unistd.h>

#include <set>

namespace {

using kxtool::CheckPort;
using kxtool::PortState;
using testing::HasSubstr;

struct MaskCase {
  const char* line;
  const char* masked;
};

const MaskCase kMaskCases[] = {
    {R"(+CNUM: "John B","+4915550100",145)", R"(+CNUM: "xxxx x","+4915550100",145)"},
    {R"(+CGDCONT: 1,"IP","corp.net","10.0.0.1",0)", R"(+CGDCONT: 1,"IP","xxxx.xxx","xx.x.x.x",0)"},
    {R"(+CGDCONT: 1,"IP","open)", R"(+CGDCONT: 1,"IP","xxxx)"},
    {R"(+CGDCONT: (1-16),"IP",,,(0-2))", R"(+CGDCONT: (1-16),"IP",,,(0-2))"},
    {R"(+COPS: 0,0,"Testnet")", R"(+COPS: 0,0,"Testnet")"},
    {R"(")", R"(")"},
};

TEST(MaskPrivateTexts, TakesOutTheOwnersNames) {
  std::set<std::string> replaced;
  for (const MaskCase& row : kMaskCases) {
    std::string line = row.line;
    kxtool::MaskPrivateTexts(line, replaced);
    EXPECT_EQ(line, row.masked);
  }
  EXPECT_THAT(replaced, testing::ElementsAre("access point name", "name of the owner"));
}

TEST(Printable, PassesNothingThatMovesATerminal) {
  EXPECT_EQ(kxtool::Printable(std::string("a\x1b[2J\r\n\t\0\x9b~", 11)),
            R"(a\x1B[2J\r\n\t\x00\x9B~)");
}

class Terminal : public testing::Test {
 protected:
  Terminal() {
    char path[64] = "";
    EXPECT_EQ(openpty(&master_, &slave_, path, nullptr, nullptr), 0);
    path_ = path;
  }
  ~Terminal() override {
    close(slave_);
    close(master_);
  }

  int master_ = -1;
  int slave_ = -1;
  std::string path_;
};

// Another process holds the terminal for itself. Root gets past that, and must be told all the
// same.
TEST_F(Terminal, IsBusyWhenAnotherProgramHasIt) {
  int ready[2];
  int leave[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(leave), 0);
  ioctl(slave_, TIOCEXCL);
  const pid_t child = fork();
  char byte = 0;
  if (child == 0) {
    close(leave[1]);
    if (write(ready[1], &byte, 1) == 1 && read(leave[0], &byte, 1) >= 0) _exit(0);
    _exit(1);
  }
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  const kxtool::PortCheck check = CheckPort(path_);
  EXPECT_EQ(check.state, PortState::kBusy);
  EXPECT_THAT(kxtool::PortFailure(path_, check).sentence,
              HasSubstr("tool_tests (process " + std::to_string(child) + ")"));
  for (const int end : {ready[0], ready[1], leave[0], leave[1]}) close(end);
  waitpid(child, nullptr, 0);
  ioctl(slave_, TIOCNXCL);
  EXPECT_EQ(CheckPort(path_).state, PortState::kFree);
}

TEST_F(Terminal, IsToldByItsFileFromOneOfTheSameNumber) {
  struct stat own;
  ASSERT_EQ(stat(path_.c_str(), &own), 0);
  EXPECT_TRUE(kxtool::IsSameTerminal(own, own));
  struct stat ofAnotherDevpts = own;
  ++ofAnotherDevpts.st_dev;
  EXPECT_FALSE(kxtool::IsSameTerminal(ofAnotherDevpts, own));
  struct stat second = own;
  ++second.st_ino;
  EXPECT_FALSE(kxtool::IsSameTerminal(second, own));
}

TEST_F(Terminal, NamesTheGroupThatMayOpenIt) {
  constexpr uid_t kNobody = 65534;
  const uid_t user = geteuid();
  ASSERT_EQ(chmod(path_.c_str(), 0), 0);
  ASSERT_EQ(user == 0 ? seteuid(kNobody) : 0, 0);
  const kxtool::PortCheck check = CheckPort(path_);
  ASSERT_EQ(user == 0 ? seteuid(0) : 0, 0);
  EXPECT_EQ(check.state, PortState::kNoPermission);
  EXPECT_THAT(kxtool::PortFailure(path_, check).sentence, HasSubstr("usermod -aG " + check.detail));
}

}  // namespace
