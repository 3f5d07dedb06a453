#include <KXWAN/serial/TtyPrivate.h>

#include <fcntl.h>
#include <unistd.h>

namespace kxwan {

bool IsExclusive(int) { return false; }

// The last close of a descriptor that does not block drops what waits.
void CloseUnsent(int fd) {
  fcntl(fd, F_SETFL, O_NONBLOCK);
  close(fd);
}

}  // namespace kxwan
