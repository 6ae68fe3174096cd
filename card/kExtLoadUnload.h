#pragma once

// The updater's private driver: installed when no card can be found, removed when the updater ends.

#include <Security/Authorization.h>

#include <cstdint>

// Makes an authorization and asks for the administrator's right. Returns 1 when it was granted, else 0. The
// caller frees the reference, which may be non-null after a failure too.
int32_t Authenticate(AuthorizationRef* ref);

// Asks for the administrator's right, unpacks the driver that ships in the bundle into /tmp, and loads it.
// Returns 1, with the authorization to be handed to UnloadAndDeleteKext, when the tool that loads it could be
// run, which does not say that the driver was taken. Otherwise returns 0 with a null reference, having said
// on standard error what failed, except when the archive's path is too long. What was copied and unpacked is
// gone then.
//
// Whatever another user puts in the way of the two names in /tmp is neither written to nor followed nor
// waited for; if it cannot be removed, copying or unpacking fails. That rests on /tmp being sticky. A process
// of the same user can still change what was unpacked until it belongs to root.
int32_t ExtractAndLoadKext(AuthorizationRef* ref);

// Unloads the driver, deletes what was unpacked and frees the authorization, leaving the reference null.
// Returns 1 when it ran, whatever came of it, and 0 when the reference was null.
int32_t UnloadAndDeleteKext(AuthorizationRef* ref);
