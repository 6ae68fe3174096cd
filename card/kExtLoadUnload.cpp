#include "card/kExtLoadUnload.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/AuthorizationTags.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Host.h"

namespace {

constexpr AuthorizationFlags kAskForRight =
    kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights | kAuthorizationFlagPreAuthorize;

constexpr char kUnpackFolder[] = "/tmp";
constexpr char kArchiveCopy[] = "/tmp/vupdaterkext.pax";
constexpr char kDriverBundle[] = "/tmp/VUpdater.kext";
constexpr char kDriverIdentifier[] = "com.VornLabs.driver.VornMx";
constexpr CFIndex kArchivePathBytes = 256;

// The driver needs time to attach to the cards, and to let go of them.
constexpr uint32_t kAttachSeconds = 4;
constexpr uint32_t kDetachSeconds = 2;

// Runs a tool with the administrator's rights and reaps it. The status is that of starting it; how the tool
// itself ended is not looked at.
OSStatus runPrivileged(AuthorizationRef authorization, const char* tool,
                       std::initializer_list<const char*> arguments) {
    std::vector<char*> list;
    for (const char* const argument : arguments) {
        list.push_back(const_cast<char*>(argument));
    }
    list.push_back(nullptr);
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

// A text as it stands between a shell command's double quotes, where nothing in it may be taken for a
// command.
std::string quoted(std::string_view text) {
    std::string safe = "\"";
    for (const char character : text) {
        if (std::string_view("\"$`\\").find(character) != std::string_view::npos) {
            safe += '\\';
        }
        safe += character;
    }
    return safe + '"';
}

// Runs a command by the shell, with the user's own rights; its status.
int shell(const std::string& command) {
    return std::system(command.c_str());
}

void say(const char* message) {
    std::fputs(message, stderr);
}

// The packed driver in the application's bundle, owned by the caller; null after saying what is missing.
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

// Puts a fresh driver bundle into /tmp, in place of whatever an earlier run left there.
bool unpack(AuthorizationRef authorization, CFURLRef archive) {
    char path[kArchivePathBytes];
    if (CFURLGetFileSystemRepresentation(archive, 1, reinterpret_cast<uint8_t*>(path), sizeof path) == 0) {
        return false;
    }
    if (shell("cp -f " + quoted(path) + " " + quoted(kArchiveCopy)) != 0) {
        say("Could not copy to tmp\n");
        return false;
    }
    deleteBundle(authorization);
    const bool unpacked = shell("cd " + quoted(kUnpackFolder) + ";pax -rf " + quoted(kArchiveCopy)) == 0;
    if (!unpacked) {
        say("Could not unpax\n");
    }
    shell("rm -rf " + quoted(kArchiveCopy));
    return unpacked;
}

// Gives the driver bundle the owner that the system insists on, and loads it.
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
        if (archive != nullptr && unpack(*ref, archive) && load(*ref)) {
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
