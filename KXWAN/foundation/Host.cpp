#include <KXWAN/foundation/Host.h>

int GetCustomSetting(const char* /*key*/, int defaultValue) { return defaultValue; }

int AfxMessageBox(const char* /*text*/) { return 1; }
