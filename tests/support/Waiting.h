#pragma once

#include <KXWAN/modem/CSModem.h>
#include <poll.h>

#include <chrono>

// Waits until something that the device sent waits at the port. False when nothing comes.
inline bool AwaitInput(const CSModem& modem, int longestMs = 20000) {
  pollfd line = {modem.m_pSerial->fd, POLLIN, 0};
  return poll(&line, 1, longestMs) == 1;
}

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}
