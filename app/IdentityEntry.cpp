// CUpdaterApp's identity entry: asking for the serial number of a card that carries none.

#include "app/CUpdaterApp.h"

// This build has no dialog for it, which is as if the user had cancelled: the card and gSerialNumber stay
// untouched.
bool CUpdaterApp::GetSerialNumberDialog() {
    return false;
}
