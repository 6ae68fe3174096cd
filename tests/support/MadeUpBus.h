#pragma once

// A folder that describes a PCI bus as the kernel does in /sys, with whatever devices a test wants. The
// register windows are ordinary files.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

class MadeUpBus {
  public:
    // A line of a device's `resource`, in the kernel's form.
    static std::string range(uint64_t first, uint64_t bytes, uint64_t flags = 0x40200) {
        char line[64];
        std::snprintf(
            line, sizeof line, "0x%016llx 0x%016llx 0x%016llx\n", static_cast<unsigned long long>(first),
            static_cast<unsigned long long>(first + bytes - 1), static_cast<unsigned long long>(flags));
        return line;
    }
    static std::string none() { return "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"; }

    std::filesystem::path path() const { return directory_.path(); }
    std::filesystem::path device(const std::string& address) const {
        return path() / "bus/pci/devices" / address;
    }

    // A device without a driver, asleep and switched off: its ranges (six BARs, the ROM, a bridge's windows)
    // and a file for each BAR.
    void add(const std::string& address, std::vector<std::string> ranges, const std::string& vendor = "1af4",
             const std::string& identifier = "1110") {
        ranges.resize(std::max<std::size_t>(ranges.size(), 7), none());
        const std::string resource = std::accumulate(ranges.begin(), ranges.end(), std::string());
        for (const char bar : std::string("012345")) {
            write(device(address) / ("resource" + std::string(1, bar)), std::string(0x1000, bar));
        }
        const std::map<std::string, std::string> texts{{"vendor", "0x" + vendor + "\n"},
                                                       {"device", "0x" + identifier + "\n"},
                                                       {"subsystem_vendor", "0x" + vendor + "\n"},
                                                       {"subsystem_device", "0x1100\n"},
                                                       {"resource", resource},
                                                       {"enable", "0\n"},
                                                       {"power/control", "auto\n"},
                                                       {"power/runtime_status", "suspended\n"},
                                                       {"driver_override", "(null)\n"},
                                                       {"config", std::string(64, '\0')}};
        for (const auto& [name, text] : texts) {
            write(device(address) / name, text);
        }
    }
    void addSlot(const std::string& name, const std::string& place) const {
        write(path() / "bus/pci/slots" / name / "address", place + "\n");
    }
    void lockDown(const std::string& states) const { write(path() / "kernel/security/lockdown", states); }
    void bind(const std::string& address, const std::string& driver) const {
        std::filesystem::create_symlink("../../drivers/" + driver, device(address) / "driver");
    }
    void remove(const std::string& address) const { std::filesystem::remove_all(device(address)); }

    std::string attribute(const std::string& address, const std::string& name) const {
        std::ifstream file(device(address) / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void setAttribute(const std::string& address, const std::string& name, const std::string& text) const {
        write(device(address) / name, text);
    }
    // The command register in its configuration.
    int command(const std::string& address) const {
        const std::string config = attribute(address, "config");
        return static_cast<uint8_t>(config.at(4)) | static_cast<uint8_t>(config.at(5)) << 8;
    }
    void setCommand(const std::string& address, int command) const {
        std::string config = attribute(address, "config");
        config.at(4) = static_cast<char>(command);
        config.at(5) = static_cast<char>(command >> 8);
        setAttribute(address, "config", config);
    }

  private:
    static void write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

    TemporaryDirectory directory_;
};
