#include <KXWAN/api/PortEnumeration.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/CSModem.h>

#include <algorithm>
#include <cstring>

ModemDescriptorArray* modemList = nullptr;
int32_t g_nModemIndex = 0;

namespace {

void DiscardList() {
  delete modemList;
  modemList = nullptr;
}

// strncpy, with a null text and a negative size counting as empty.
void CopyField(char* buffer, int size, const char* text) {
  const size_t room = static_cast<size_t>(std::max(size, 0));
  const size_t length = text != nullptr ? strnlen(text, room) : 0;
  std::copy_n(text, length, buffer);
  std::fill_n(buffer + length, room - length, '\0');
}

}  // namespace

bool KXModemFindFirst(char* name, int nameSize, char* path, int pathSize) {
  CSModem modem;
  DiscardList();
  if (!modem.GetInstalledModems(&modemList)) return false;
  g_nModemIndex = 1;
  return KXModemFindNext(name, nameSize, path, pathSize);
}

bool KXModemFindNext(char* name, int nameSize, char* path, int pathSize) {
  if (modemList == nullptr) return false;
  if (g_nModemIndex > modemList->count) {
    DiscardList();
    return false;
  }
  CopyField(name, nameSize, modemList->GetNameAtIndex(g_nModemIndex));
  CopyField(path, pathSize, modemList->GetPathAtIndex(g_nModemIndex));
  ++g_nModemIndex;
  return true;
}

bool KXModemPortOfType(const char* port, const char* type) {
  const kxwan::ScopedText text(port);
  return text.FindNoCase(type) >= 0;
}

// Deliberate: only the port is lowered. Applications keep their names in lower case.
bool KXModemPortMatch(const char* port, const char* name) {
  kxwan::ScopedText lowered(port);
  lowered.MakeLower();
  return kxwan::Equals(lowered.String(), name);
}
