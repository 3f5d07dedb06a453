#pragma once

#include <string>

namespace kxsim {

// A symbolic link that leads to a device, whichever terminal it has at the moment.
class Link {
 public:
  explicit Link(std::string path) : path_(std::move(path)) {}
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  // Replaces a link that is there, and nothing else. False with a sentence in error.
  bool PointTo(const std::string& target, std::string& error);

 private:
  const std::string path_;  // empty: no link is wanted
  std::string target_;
};

}  // namespace kxsim
