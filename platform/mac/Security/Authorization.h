#pragma once

// The Authorization Services: asking for the administrator's right and running tools with it.
//
// Names, flags, argument orders and status codes are the Mac's. An authorization belongs to its creator, who
// gives it back with AuthorizationFree.

#include <Carbon/MacTypes.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

using AuthorizationRef = const struct AuthorizationOpaqueRef*;
using AuthorizationFlags = uint32_t;

struct AuthorizationItem {
    const char* name;
    std::size_t valueLength;
    void* value;
    uint32_t flags;
};

struct AuthorizationItemSet {
    uint32_t count;
    AuthorizationItem* items;
};
using AuthorizationRights = AuthorizationItemSet;
using AuthorizationEnvironment = AuthorizationItemSet;

constexpr const AuthorizationEnvironment* kAuthorizationEmptyEnvironment = nullptr;

constexpr AuthorizationFlags kAuthorizationFlagDefaults = 0x00;
constexpr AuthorizationFlags kAuthorizationFlagInteractionAllowed = 0x01;
constexpr AuthorizationFlags kAuthorizationFlagExtendRights = 0x02;
constexpr AuthorizationFlags kAuthorizationFlagPreAuthorize = 0x10;

constexpr OSStatus errAuthorizationSuccess = 0;
constexpr OSStatus errAuthorizationInvalidRef = -60002;
constexpr OSStatus errAuthorizationDenied = -60005;
constexpr OSStatus errAuthorizationCanceled = -60006;
constexpr OSStatus errAuthorizationInteractionNotAllowed = -60007;
constexpr OSStatus errAuthorizationInternal = -60008;
constexpr OSStatus errAuthorizationToolExecuteFailure = -60031;
constexpr OSStatus errAuthorizationToolEnvironmentError = -60032;

// Stores a new authorization. If rights are given, they are asked for at once, as by AuthorizationCopyRights;
// if they are not granted, there is no authorization and the reference is left alone.
OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization);

// Acquires rights for an authorization. kAuthorizationRightExecute is the only one; any other is denied. A
// right that it already holds is granted without asking; otherwise the flags must allow interaction and the
// extension of rights. The granted rights are not copied: that argument must be null.
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                                 AuthorizationRights** authorizedRights);

// Starts a tool with the administrator's right, which the authorization must hold (errAuthorizationDenied).
// The arguments do not name the tool and end in a null pointer. Success means that the tool was started, as a
// child of this process, which must wait for it. There is no pipe to the tool: that argument must be null.
OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* pathToTool,
                                            AuthorizationFlags options, char* const* arguments,
                                            std::FILE** communicationsPipe);

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags);
