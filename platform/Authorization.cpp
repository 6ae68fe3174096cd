#include <Security/Authorization.h>
#include <Security/AuthorizationTags.h>

#include <bit>
#include <cstring>
#include <string>
#include <vector>

#include "platform/HandleTable.h"
#include "platform/Host.h"
#include "platform/LiveAuthorizations.h"

namespace {

constexpr AuthorizationFlags kMayAsk = kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights;

struct Authorization {
    bool holdsAdministratorRight = false;
};

HandleTable<Authorization> gAuthorizations;

uint32_t handleOf(AuthorizationRef authorization) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(authorization));
}

OSStatus acquireAdministratorRight(Authorization& authorization, AuthorizationFlags flags) {
    if (authorization.holdsAdministratorRight) {
        return errAuthorizationSuccess;
    }
    if ((flags & kMayAsk) != kMayAsk) {
        return errAuthorizationInteractionNotAllowed;
    }
    switch (InstalledHost().askForAdministratorRight()) {
        case Host::RightAnswer::granted:
            // Without being asked for in advance, the right is good for this process but not for its tools.
            authorization.holdsAdministratorRight = (flags & kAuthorizationFlagPreAuthorize) != 0;
            return errAuthorizationSuccess;
        case Host::RightAnswer::cancelled:
            return errAuthorizationCanceled;
        case Host::RightAnswer::denied:
            break;
    }
    return errAuthorizationDenied;
}

}  // namespace

std::size_t CountLiveAuthorizations() {
    return gAuthorizations.size();
}

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization) {
    const uint32_t handle = gAuthorizations.add({});
    const auto created = std::bit_cast<AuthorizationRef>(uintptr_t{handle});
    const OSStatus status = rights == nullptr
                                ? errAuthorizationSuccess
                                : AuthorizationCopyRights(created, rights, environment, flags, nullptr);
    if (status != errAuthorizationSuccess) {
        gAuthorizations.release(handle);
        return status;
    }
    *authorization = created;
    return errAuthorizationSuccess;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* /*environment*/, AuthorizationFlags flags,
                                 AuthorizationRights** authorizedRights) {
    Authorization* const found = gAuthorizations.find(handleOf(authorization));
    if (found == nullptr) {
        return errAuthorizationInvalidRef;
    }
    if (authorizedRights != nullptr) {
        return errAuthorizationInternal;
    }
    for (uint32_t index = 0; index < rights->count; ++index) {
        if (std::strcmp(rights->items[index].name, kAuthorizationRightExecute) != 0) {
            return errAuthorizationDenied;
        }
        const OSStatus status = acquireAdministratorRight(*found, flags);
        if (status != errAuthorizationSuccess) {
            return status;
        }
    }
    return errAuthorizationSuccess;
}

OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* pathToTool,
                                            AuthorizationFlags /*options*/, char* const* arguments,
                                            std::FILE** communicationsPipe) {
    const Authorization* const found = gAuthorizations.find(handleOf(authorization));
    if (found == nullptr) {
        return errAuthorizationInvalidRef;
    }
    if (!found->holdsAdministratorRight) {
        return errAuthorizationDenied;
    }
    if (communicationsPipe != nullptr) {
        return errAuthorizationToolEnvironmentError;
    }
    std::vector<std::string> texts;
    for (; *arguments != nullptr; ++arguments) {
        texts.emplace_back(*arguments);
    }
    return InstalledHost().runPrivilegedTool(pathToTool, texts) ? errAuthorizationSuccess
                                                                : errAuthorizationToolExecuteFailure;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags /*flags*/) {
    return gAuthorizations.release(handleOf(authorization)) ? errAuthorizationSuccess
                                                            : errAuthorizationInvalidRef;
}
