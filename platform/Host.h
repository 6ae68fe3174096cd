#pragma once

// The one contract between the Mac service names and the machine underneath them.
//
// The functions under platform/mac keep the Mac's semantics (reference counts, status codes) and ask the
// installed Host for everything that only the machine can know. An implementation can be written from this
// header alone.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class Host {
  public:
    // A range of a card's memory as it appears in this process. The base is only for address arithmetic,
    // loadWord and storeWord; the processor need not be able to access it directly.
    struct MappedRange {
        void* base;
        uint32_t bytes;
    };

    // A running process. Serial numbers are never 0.
    struct Process {
        uint64_t serialNumber;
        std::string name;
    };

    // The answer to a request for the administrator's right: granted, refused by the user, or refused by the
    // system without asking.
    enum class RightAnswer { granted, cancelled, denied };

    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    // The application's bundle (a folder that holds Contents/Resources), or an empty path if there is none.
    virtual std::filesystem::path bundleDirectory() = 0;

    // The services that match a driver class now, in the registry's order. The numbers are the host's own and
    // stay valid for the host's life.
    virtual std::vector<uint64_t> servicesOfClass(std::string_view className) = 0;

    // Opens a connection to a service. Returns a connection number that is above 0xFFFF, so that it can be
    // mistaken neither for "none" nor for a card index, and is never reused; or nothing if the service cannot
    // be opened.
    [[nodiscard]] virtual std::optional<uint32_t> openService(uint64_t service) = 0;

    // Closes a connection and takes its mappings away. Returns false, changing nothing, if the number is not
    // an open connection.
    virtual bool closeConnection(uint32_t connection) = 0;

    // Maps one of the card's memory ranges (0 or 1). The mapping lasts until its connection is closed.
    // Nothing if the range cannot be mapped.
    [[nodiscard]] virtual std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) = 0;

    // Calls a driver method that takes no input and answers with a structure (platform/CardDriver.h). Returns
    // how many bytes of the reply were filled, or nothing, leaving the reply alone, if the driver refuses.
    [[nodiscard]] virtual std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                                                std::span<uint8_t> reply) = 0;

    // Moves one aligned 32-bit word from or to mapped memory. The word is formed with the byte at the lowest
    // address as its most significant byte, on every processor. These two are the program's hottest calls: a
    // firmware write makes nearly three hundred million of them.
    virtual uint32_t loadWord(const uint32_t* address) = 0;
    virtual void storeWord(uint32_t* address, uint32_t word) = 0;

    // The running processes, in the order in which the system lists them. The one that users log in with, and
    // that shuts the computer down when it gets the event, is named "loginwindow".
    virtual std::vector<Process> processes() = 0;

    // Hands the system's shutdown event to a process. Returns false if there is no such process.
    [[nodiscard]] virtual bool deliverShutDownEvent(uint64_t processSerialNumber) = 0;

    // Asks the user at the computer for the administrator's right, and returns with the answer.
    virtual RightAnswer askForAdministratorRight() = 0;

    // Starts a tool, named by its absolute path, with the administrator's rights, as a child of this process
    // that the caller waits for. The arguments do not name the tool. Returns false, with no child, if it
    // cannot be started; the child's exit status says how it ended. The updater runs /bin/rm,
    // /usr/sbin/chown, /sbin/kextload and /sbin/kextunload.
    [[nodiscard]] virtual bool runPrivilegedTool(const std::string& tool,
                                                 const std::vector<std::string>& arguments) = 0;

    // Returns after this many seconds of machine time.
    virtual void sleepSeconds(uint32_t seconds) = 0;
};

namespace platform {
extern Host* installedHost;
}

// Installs a host. Whatever the services handed out on the previous host becomes invalid. The caller keeps
// ownership and installs null before destroying the host. Everything runs on one thread.
void InstallHost(Host* host);

// The installed host; calling a service without one is a bug. Inline, because every register access passes
// here.
inline Host& InstalledHost() {
    assert(platform::installedHost != nullptr);
    return *platform::installedHost;
}
