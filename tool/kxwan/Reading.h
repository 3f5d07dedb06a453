#pragma once

#include <KXWAN/KXWAN.h>
#include <tool/kxwan/Failure.h>
#include <tool/kxwan/Port.h>
#include <tool/kxwan/Report.h>

#include <cstdint>
#include <functional>

namespace kxtool {

// How a reading ended. Silence is no answer: what a device told counts only where it was in time
// with all of it, or where it surely gives no answer at all.
struct Reading {
  Result failure;        // the device was late, has left or answers nothing any more
  uint32_t ignored = 0;  // commands of it that the device never answers
};

// Reads what may be read twice. A device gets four seconds for each command, asked once: an answer
// that comes within its own try is never in doubt. Where commands are left without an answer, and
// the device then answers others, all is read again with two tries each, at most twice. Commands
// that are left without an answer twice, with none that comes late, are ones that the device
// ignores.
Reading ReadInTime(Port& port, const std::function<void()>& read);

// Tells of commands that the device ignores, where there are any.
void ShowIgnored(uint32_t ignored, Report& report);

// Why the device does not answer a harmless command; nothing when it does. A line on which earlier
// answers may still come is given some time for them. The echo is off and results are words
// afterwards.
Result CheckAnswers(Port& port);

// What an exchange without a result means: the device is silent, still owes earlier answers, has
// left or takes nothing.
Failure NoAnswer(const Port& port, int result);

}  // namespace kxtool
