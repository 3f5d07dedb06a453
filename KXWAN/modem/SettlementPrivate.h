#pragma once

#include <KXWAN/modem/ConversationPrivate.h>

namespace kxwan {

// Finds out with harmless questions, each asked once and known by its answer, that nothing is
// outstanding any more, within so long. Of a device that refuses them all, that it does so at once
// behind 15 s of silence.
// True: the next command's result can be no other's. False: answers to earlier commands may still
// come, or the device has left.
bool Settle(Conversation& conversation, Seconds budget);

}  // namespace kxwan
