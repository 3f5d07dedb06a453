#pragma once

#include <KXWAN/foundation/Export.h>

#include <string>

namespace kxwan {

// A command that carries a PIN or PUK. Its characters are overwritten before they are freed.
class SecretCommand {
 public:
  explicit SecretCommand(const char* format, ...) KXWAN_PRINTF(2, 3);
  SecretCommand(const SecretCommand&) = delete;
  SecretCommand& operator=(const SecretCommand&) = delete;
  ~SecretCommand();

  const char* String() const { return text_.c_str(); }

 private:
  std::string text_;
};

}  // namespace kxwan
