#pragma once

namespace kxsim {

// The speed that is set on a terminal, in bits per second; 0 when it cannot be read.
int TerminalSpeed(int terminal);

}  // namespace kxsim
