#pragma once

#include <string>

namespace kxsim {

// A pseudo-terminal: the host opens Path(), the device holds Master().
class PseudoTerminal {
 public:
  PseudoTerminal() = default;
  ~PseudoTerminal() { Close(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // The terminal starts with the system's default settings, or raw. False with errno set.
  bool Open(bool raw);
  // Hangs up: the host's reads end, its writes fail.
  void Close();

  bool IsOpen() const { return master_ >= 0; }
  int Master() const { return master_; }
  const std::string& Path() const { return path_; }

  // The speed that the host has set, in bits per second.
  int HostSpeed() const;
  // Whether the terminal itself sends back what the device sends, as a fresh one does.
  bool HostEchoes() const;
  // Forgets a host that has closed: what it has not read, and its claim to be the only one, which
  // a serial port gives up at the last close.
  void ForgetHost() const;

 private:
  int master_ = -1;
  int slave_ = -1;  // held open so that the terminal outlives a host that closes it
  std::string path_;
};

}  // namespace kxsim
