#pragma once

// The updater's private driver: installed when no card can be found, removed when the updater ends.

#include <Security/Authorization.h>

#include <cstdint>

// Creates an authorization and asks for the administrator's right. Returns 1 if it was granted, else 0. The
// caller frees the reference, which may be non-null after a failure too.
[[nodiscard]] int32_t Authenticate(AuthorizationRef* ref);

// Asks for the administrator's right, unpacks the driver that ships in the bundle into /tmp, and loads it.
// Returns 1, with the authorization for UnloadAndDeleteKext, if the tool that loads it could be started; the
// system may still have refused the driver. Otherwise deletes what it copied and unpacked and returns 0 with
// a null reference. Standard error says what failed, unless the archive's path is too long.
//
// Nothing that another user puts at the two names in /tmp is written to, followed or waited for. A process of
// the same user can still change what was unpacked until it belongs to root.
[[nodiscard]] int32_t ExtractAndLoadKext(AuthorizationRef* ref);

// Unloads the driver, deletes what was unpacked and frees the authorization, leaving the reference null.
// Returns 1, however the tools ended, or 0 if the reference was null.
int32_t UnloadAndDeleteKext(AuthorizationRef* ref);
