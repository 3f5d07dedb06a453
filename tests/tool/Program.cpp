#include <tests/tool/Program.h>

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <mutex>

namespace {

// Held while a child starts: another that starts meanwhile would keep the ends of its pipes open.
std::mutex startMutex;

[[noreturn]] void Become(const std::vector<std::string>& arguments) {
  std::vector<char*> argv = {const_cast<char*>("kxwan")};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  unsetenv("HOME");
  execv(KXWAN_PROGRAM, argv.data());
  _exit(127);
}

void Wait(pid_t child, ProgramRun& run) {
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) run.signal = WTERMSIG(status);
}

// Appends what there is to read; false at the end.
bool Append(int descriptor, std::string& text) {
  char buffer[4096];
  const ssize_t got = read(descriptor, buffer, sizeof buffer);
  if (got > 0) text.append(buffer, static_cast<size_t>(got));
  return got > 0;
}

void Collect(int out, int err, ProgramRun& run) {
  pollfd sources[] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
  std::string* texts[] = {&run.out, &run.err};
  while (sources[0].fd >= 0 || sources[1].fd >= 0) {
    poll(sources, 2, -1);
    for (int i = 0; i < 2; ++i) {
      if (sources[i].revents != 0 && !Append(sources[i].fd, *texts[i])) sources[i].fd = -1;
    }
  }
}

}  // namespace

ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input) {
  int in[2];
  int out[2];
  int err[2];
  std::unique_lock<std::mutex> lock(startMutex);
  if (pipe(in) != 0 || pipe(out) != 0 || pipe(err) != 0) return {};
  // Written before there is a reader that might end without reading: the pipe takes a short input.
  EXPECT_EQ(write(in[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
  const pid_t child = fork();
  if (child == 0) {
    dup2(in[0], STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    for (const int* ends : {in, out, err}) {
      close(ends[0]);
      close(ends[1]);
    }
    Become(arguments);
  }
  for (const int end : {in[0], in[1], out[1], err[1]}) close(end);
  lock.unlock();
  ProgramRun run;
  Collect(out[0], err[0], run);
  close(out[0]);
  close(err[0]);
  Wait(child, run);
  return run;
}

ProgramRun RunWithoutReader(const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  close(ends[0]);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    Become(arguments);
  }
  close(ends[1]);
  ProgramRun run;
  Wait(child, run);
  return run;
}

ProgramRun RunOnTerminal(const std::vector<std::string>& arguments,
                         const std::vector<Typing>& typing, bool& echoes) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) Become(arguments);
  ProgramRun run;
  size_t seen = 0;
  for (const Typing& row : typing) {
    size_t found = run.out.npos;
    while ((found = run.out.find(row.after, seen)) == run.out.npos && Append(terminal, run.out)) {
    }
    seen = found + row.after.size();
    EXPECT_EQ(write(terminal, row.bytes.data(), row.bytes.size()),
              static_cast<ssize_t>(row.bytes.size()));
  }
  while (Append(terminal, run.out)) {
  }
  Wait(child, run);
  termios attributes = {};
  echoes = tcgetattr(terminal, &attributes) == 0 && (attributes.c_lflag & ECHO) != 0;
  close(terminal);
  return run;
}

std::string SimulatedPort(const std::string& profile) {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  static int count = 0;
  std::string name = std::string(test->test_suite_name()) + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  const std::string file = testing::TempDir() + name + std::to_string(getpid()) + "-" +
                           std::to_string(count++) + ".toml";
  std::ofstream(file) << profile;
  return "sim:" + file;
}
