#include <KXWAN/sim/SecretPrivate.h>

#include <cstdarg>
#include <cstdio>

namespace kxwan {

SecretCommand::SecretCommand(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  if (length > 0) {
    text_.resize(static_cast<size_t>(length));
    std::vsnprintf(text_.data(), text_.size() + 1, format, again);
  }
  va_end(again);
  va_end(arguments);
}

SecretCommand::~SecretCommand() {
  volatile char* characters = text_.data();  // volatile: the writes are not optimised away
  for (size_t i = 0; i < text_.size(); ++i) characters[i] = '\0';
}

}  // namespace kxwan
