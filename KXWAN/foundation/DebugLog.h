#pragma once

#include <KXWAN/foundation/Export.h>

#include <cstdio>

// The log stream, shared by every object of the process; null until the first record is written.
// Once opened the library never closes it. A program that wants its log elsewhere stores a stream
// of its own here before its first call, and before it starts a second thread.
extern KXWAN_API FILE* logFileFD;

// Writes one record to the debug log, /tmp/zrklog.txt: a time stamp ("11:16:26 06:29:35 - ", month
// first) and the text that the printf-like format gives. No newline is added. A record is at most
// 1023 characters and is in the file when the call returns. When the log cannot be opened the
// record is dropped and the next call tries again. Any thread may write; each record is one
// unbroken write.
//
// PINs and PUKs stand in the log like every other command, so the file is made for its owner alone
// and used only when it is a regular file that belongs to the user.
KXWAN_API void KXOutputDebug(const char* format, ...) KXWAN_PRINTF(1, 2);
