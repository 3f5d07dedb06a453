#pragma once

#include <tool/kxwan/Failure.h>

#include <string>
#include <vector>

namespace kxtool {

// Reads one line for each prompt: from source where it is given (a file, the number of an open
// file descriptor, or "-" for standard input), else from the terminal, which does not show what is
// typed. what names it all for the failure, such as "PIN".
Result ReadSecrets(const std::string& source, const std::vector<std::string>& prompts,
                   const std::string& what, std::vector<std::string>& secrets);

}  // namespace kxtool
