#include <Security/Authorization.h>
#include <Security/AuthorizationTags.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/Host.h"
#include "platform/ServiceTables.h"

namespace {

constexpr AuthorizationFlags kMayAsk = kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights;

OSStatus acquireAdministratorRight(platform::Authorization& authorization, AuthorizationFlags flags) {
    if (authorization.holdsAdministratorRight) {
        return errAuthorizationSuccess;
    }
    if ((flags & kMayAsk) != kMayAsk) {
        return errAuthorizationInteractionNotAllowed;
    }
    switch (InstalledHost().askForAdministratorRight()) {
        case Host::RightAnswer::granted:
            // Unless it is asked for in advance, the right holds for this process but not for its tools.
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

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization) {
    const AuthorizationRef created = platform::Tables().authorizations.add({});
    const OSStatus status = rights == nullptr
                                ? errAuthorizationSuccess
                                : AuthorizationCopyRights(created, rights, environment, flags, nullptr);
    if (status != errAuthorizationSuccess) {
        platform::Tables().authorizations.release(created);
        return status;
    }
    *authorization = created;
    return errAuthorizationSuccess;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* /*environment*/, AuthorizationFlags flags,
                                 AuthorizationRights** authorizedRights) {
    auto* const found = platform::Tables().authorizations.find(authorization);
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
    const auto* const found = platform::Tables().authorizations.find(authorization);
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
    return platform::Tables().authorizations.release(authorization) ? errAuthorizationSuccess
                                                                    : errAuthorizationInvalidRef;
}
