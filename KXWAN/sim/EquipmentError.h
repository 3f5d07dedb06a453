#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>

// Turns the text of a "+CME ERROR:" report (3GPP TS 27.007 9.2) into a SIM code, see SimCodes.h:
// its number where the whole text is one, else its phrase. kSimOtherError for anything else.
KXWAN_API long DecodeCMError(const CString& errorText);
