#pragma once

#include <profile/Profile.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kxsim {

// The replies that a profile lists, each command's answers in succession.
class Script {
 public:
  explicit Script(const std::vector<Reply>& replies);

  // The next answer to a command; null when it is not listed.
  const Answer* Next(std::string_view command);

 private:
  struct Entry {
    const Reply* reply;
    size_t next;
  };
  Entry* Find(const std::string& command);

  std::map<std::string, Entry> exact_;
  std::map<std::string, Entry> beginnings_;
};

}  // namespace kxsim
