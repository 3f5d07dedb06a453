#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kxsim {

// Where in a text something secret stands, and what it is.
struct SecretPlace {
  size_t start = 0;
  size_t length = 0;
  const char* what = "";
};

// The numbers of a text, in its order: runs of digits or of hexadecimal digits, hyphens between
// digits included.
std::vector<SecretPlace> FindNumbers(std::string_view text);

// Those that are secret by their length or by a label in front of them.
std::vector<SecretPlace> FindSecretNumbers(std::string_view text);

// Those in the answer to a command that asks for one, or in a command that dials.
std::vector<SecretPlace> FindAskedNumbers(std::string_view command, std::string_view text);

// The PINs and PUKs among the parameters of a command.
std::vector<SecretPlace> FindCodes(std::string_view text);

}  // namespace kxsim
