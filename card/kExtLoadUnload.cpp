#include "card/kExtLoadUnload.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/AuthorizationTags.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <system_error>
#include <vector>

#include "card/SharedFolder.h"
#include "card/ShellCommand.h"
#include "platform/Host.h"

namespace {

constexpr AuthorizationFlags kAskForRight =
    kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights | kAuthorizationFlagPreAuthorize;

constexpr char kUnpackFolder[] = "/tmp";
constexpr char kArchiveCopy[] = "/tmp/vupdaterkext.pax";
constexpr char kDriverBundle[] = "/tmp/VUpdater.kext";
constexpr char kDriverIdentifier[] = "com.VornLabs.driver.VornMx";
constexpr CFIndex kArchivePathBytes = 256;

// The driver needs time to attach to the cards, and to detach from them.
constexpr uint32_t kAttachSeconds = 4;
constexpr uint32_t kDetachSeconds = 2;

// A program can inherit a child that has already ended; wait would mistake it for the tool.
void reapEndedChildren() {
    while (::waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

// Runs a tool with the administrator's rights and reaps it. The status says whether it started, not how it
// ended.
OSStatus runPrivileged(AuthorizationRef authorization, const char* tool,
                       std::initializer_list<const char*> arguments) {
    std::vector<char*> list;
    for (const char* const argument : arguments) {
        list.push_back(const_cast<char*>(argument));
    }
    list.push_back(nullptr);
    reapEndedChildren();
    const OSStatus status = AuthorizationExecuteWithPrivileges(
        authorization, tool, kAuthorizationFlagDefaults, list.data(), nullptr);
    if (status == errAuthorizationSuccess) {
        while (wait(nullptr) == -1 && errno == EINTR) {
        }
    }
    return status;
}

void deleteBundle(AuthorizationRef authorization) {
    runPrivileged(authorization, "/bin/rm", {"-rf", kDriverBundle});
}

void say(const char* message) {
    std::fputs(message, stderr);
}

// The URL of the packed driver in the bundle, owned by the caller; null, with a message, if it is missing.
CFURLRef copyArchiveURL() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr) {
        say("Could not get main bundle\n");
        return nullptr;
    }
    const CFURLRef url = CFBundleCopyResourceURL(bundle, CFSTR("vupdaterkext"), CFSTR("pax"), nullptr);
    if (url == nullptr) {
        say("Could not find pax in resource.\n");
    }
    return url;
}

bool copyArchive(const char* path) {
    if (!TakeFile(kArchiveCopy)) {
        return false;
    }
    const bool copied = RunByShell("cp -f " + Quoted(path) + " " + Quoted(kArchiveCopy)) == 0;
    if (!copied) {
        ::unlink(kArchiveCopy);
    }
    return copied;
}

// pax would write through a link at the bundle's name, or into another user's folder, so the name is taken
// first. The archive may hold a link instead of the bundle, so that is checked afterwards.
bool unpackArchive() {
    if (!TakeFolder(kDriverBundle)) {
        return false;
    }
    std::error_code error;
    const bool unpacked =
        RunByShell("cd " + Quoted(kUnpackFolder) + ";pax -rf " + Quoted(kArchiveCopy)) == 0 &&
        std::filesystem::symlink_status(kDriverBundle, error).type() == std::filesystem::file_type::directory;
    if (!unpacked) {
        std::filesystem::remove_all(kDriverBundle, error);
    }
    return unpacked;
}

// Puts a fresh driver bundle into /tmp, replacing whatever an earlier run left there.
bool putIntoTmp(AuthorizationRef authorization, CFURLRef archive) {
    char path[kArchivePathBytes];
    if (CFURLGetFileSystemRepresentation(archive, 1, reinterpret_cast<uint8_t*>(path), sizeof path) == 0) {
        return false;
    }
    if (!copyArchive(path)) {
        say("Could not copy to tmp\n");
        return false;
    }
    deleteBundle(authorization);
    const bool unpacked = unpackArchive();
    if (!unpacked) {
        say("Could not unpax\n");
    }
    // A copy that stays behind does no harm: the next run replaces it.
    static_cast<void>(RunByShell("rm -rf " + Quoted(kArchiveCopy)));
    return unpacked;
}

// Gives the driver bundle the owner that the system requires, and loads it.
bool load(AuthorizationRef authorization) {
    if (runPrivileged(authorization, "/usr/sbin/chown", {"-R", "root:wheel", kDriverBundle}) !=
        errAuthorizationSuccess) {
        say("Could not chown\n");
        deleteBundle(authorization);
        return false;
    }
    const OSStatus started = runPrivileged(authorization, "/sbin/kextload", {kDriverBundle});
    InstalledHost().sleepSeconds(kAttachSeconds);
    if (started != errAuthorizationSuccess) {
        say("kExtLoadUnload: Could not kextload\n");
        deleteBundle(authorization);
        return false;
    }
    return true;
}

void freeAuthorization(AuthorizationRef* ref) {
    AuthorizationFree(*ref, kAuthorizationFlagDefaults);
    *ref = nullptr;
}

}  // namespace

int32_t Authenticate(AuthorizationRef* ref) {
    *ref = nullptr;
    AuthorizationItem item = {kAuthorizationRightExecute, 0, nullptr, 0};
    const AuthorizationRights rights = {1, &item};
    if (AuthorizationCreate(nullptr, kAuthorizationEmptyEnvironment, kAskForRight, ref) !=
        errAuthorizationSuccess) {
        return 0;
    }
    const OSStatus status =
        AuthorizationCopyRights(*ref, &rights, kAuthorizationEmptyEnvironment, kAskForRight, nullptr);
    return status == errAuthorizationSuccess ? 1 : 0;
}

int32_t ExtractAndLoadKext(AuthorizationRef* ref) {
    int32_t result = 0;
    CFURLRef archive = nullptr;
    *ref = nullptr;
    if (Authenticate(ref) == 0) {
        say("Could not Authenticate\n");
    } else {
        archive = copyArchiveURL();
        if (archive != nullptr && putIntoTmp(*ref, archive) && load(*ref)) {
            result = 1;
        }
    }
    if (result != 1 && *ref != nullptr) {
        freeAuthorization(ref);
    }
    if (archive != nullptr) {
        CFRelease(archive);
    }
    return result;
}

int32_t UnloadAndDeleteKext(AuthorizationRef* ref) {
    if (*ref == nullptr) {
        return 0;
    }
    runPrivileged(*ref, "/sbin/kextunload", {"-b", kDriverIdentifier});
    InstalledHost().sleepSeconds(kDetachSeconds);
    deleteBundle(*ref);
    freeAuthorization(ref);
    return 1;
}
