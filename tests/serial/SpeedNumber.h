#pragma once

// Gives a tty a speed by number, any that it may have, as other programs of this system do.
bool SetSpeedNumber(int fd, unsigned speed);
