#include <KXWAN/KXWAN.h>

#include <cstdio>
#include <cstring>

// What an application does that has only the installed tree: text, a static method, an object.
int main() {
  char number[16] = "";
  CSWirelessModem::GetGPRSDialedNumber("SIEMENS", "MC45", number, sizeof number);
  CString expected;
  expected.Format("*99***%d#", 2);
  CSWirelessModem modem;
  if (std::strcmp(number, expected.String()) != 0 || modem.m_pModem != nullptr) {
    std::fprintf(stderr, "the number to dial is %s, not %s\n", number, expected.String());
    return 1;
  }
  return 0;
}
