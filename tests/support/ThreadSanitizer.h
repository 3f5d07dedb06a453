#pragma once

// The event library closes descriptors by the bare system call, where the thread sanitizer does not
// see it: whoever gets the same number next would seem to race.
// One source of a program includes this.
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_suppressions() {
  return "called_from_lib:libuv.so\n";
}
