#include <KXWAN/sim/SecretPrivate.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <cstdarg>

namespace kxwan {

SecretCommand::SecretCommand(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatInto(text_, format, arguments);  // in place: no copy is left behind
  va_end(arguments);
}

SecretCommand::~SecretCommand() {
  volatile char* characters = text_.data();  // volatile: the writes are not optimised away
  for (size_t i = 0; i < text_.size(); ++i) characters[i] = '\0';
}

}  // namespace kxwan
