#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace kxwan {

// A record with its NUL.
constexpr size_t kLogLineSize = 1024;

// What stands before the text of a record.
struct LogStamp {
  char text[80] = "";
  size_t length = 0;
};

LogStamp FormatLogStamp(const tm& time);

// Puts the stamp and the text into a line, cut to its size, and gives its length.
size_t FormatLogRecord(char (&line)[kLogLineSize], const LogStamp& stamp, const char* format,
                       va_list arguments);

// Whether what was opened may be written to: a regular file that belongs to the user.
bool IsOwnLogFile(const struct stat& status, uid_t user);

// Opens a log for appending, or gives null and leaves no descriptor open.
FILE* OpenLog(const char* path);

// Appends a record to the stream, which is opened first where it is null. A record that finds no
// log is dropped. One thread at a time gets in: the log is opened once, and a record is one write.
void AppendLogRecord(FILE*& stream, const char* path, std::string_view record);

}  // namespace kxwan
