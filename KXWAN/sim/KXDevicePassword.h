#pragma once

// A PIN or PUK entry as an application fills it in. The texts are NUL-terminated.
struct KXDevicePassword {
  char szPUK[128];       // read only with a PUK
  char szPIN[128];       // the PIN, or the new PIN with a PUK
  signed char bSavePIN;  // nonzero: switch the card's PIN request off afterwards
};

static_assert(sizeof(KXDevicePassword) == 257, "the record's layout is frozen");
