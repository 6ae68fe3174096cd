#pragma once

// The updater's private driver: installed when no card can be found, removed when the updater ends.

#include <Security/Authorization.h>

#include <cstdint>

// Makes an authorization and asks for the administrator's right. Returns 1 when it was granted, else 0. The
// caller frees the reference, which may be non-null after a failure too.
int32_t Authenticate(AuthorizationRef* ref);

// Asks for the administrator's right, unpacks the driver that ships in the bundle into /tmp, and loads it.
// Returns 1, with the authorization to be handed to UnloadAndDeleteKext, when the tool that loads it could be
// run, which does not say that the driver was taken. Otherwise returns 0 with a null reference, having
// said on standard error what failed. The archive's copy is gone then, and what was unpacked too, unless
// unpacking itself failed: then the part that was unpacked stays, until the next run replaces it.
int32_t ExtractAndLoadKext(AuthorizationRef* ref);

// Unloads the driver, deletes what was unpacked and frees the authorization, leaving the reference null.
// Returns 1 when it ran, whatever came of it, and 0 when the reference was null.
int32_t UnloadAndDeleteKext(AuthorizationRef* ref);
