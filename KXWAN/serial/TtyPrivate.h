#pragma once

namespace kxwan {

// What each system does with its ttys in its own way.

// Whether somebody has taken the tty for exclusive use. False where the system does not tell.
bool IsExclusive(int fd);

// Closes a tty with output that its device does not take, without waiting for it. The output is
// lost.
void CloseUnsent(int fd);

}  // namespace kxwan
