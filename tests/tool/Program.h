#pragma once

#include <string>
#include <vector>

// What a run of the program left.
struct ProgramRun {
  int status = -1;  // exit status; -1 when a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
};

// Runs kxwan with these arguments and this short standard input, without a home directory. Several
// threads may run it at the same time.
ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input = "");

// The same with a standard output that nobody reads any more. Only the status is told.
ProgramRun RunWithoutReader(const std::vector<std::string>& arguments);

// The same on a terminal of its own: every time it has written the text of a row, the bytes of the
// row are typed. out is all that the terminal showed; echoes tells whether it shows what is typed
// at the end.
struct Typing {
  std::string after;
  std::string bytes;
};
ProgramRun RunOnTerminal(const std::vector<std::string>& arguments,
                         const std::vector<Typing>& typing, bool& echoes);

// Writes a profile that only this test knows and gives the PORT that plays it.
std::string SimulatedPort(const std::string& profile);
