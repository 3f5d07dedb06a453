#pragma once

#include <KXWAN/modem/ConversationPrivate.h>

namespace kxwan {

// Finds the line speed at which a device answers, and leaves the line at it. Each speed is asked a
// question of its own, so that a late answer tells which speed it answers. False leaves the line at
// the speed it had, and speed untouched. Half a minute is the end in any case.
bool SearchSpeed(Conversation& conversation, unsigned long& speed);

// Whether a device that took so long for its last answer answers at the line's present speed, by a
// few questions asked once each. True also settles the line, unless the device refuses all of them
// and is slow. However much a device says by itself, it is asked until that time only.
bool ConfirmSpeed(Conversation& conversation, Seconds lastAnswerTook, bool registersRefused,
                  Seconds end);

}  // namespace kxwan
