#pragma once

// An agent whose cards are plain files, and that records what it is asked.

#include <fcntl.h>
#include <sys/mman.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "linux/host/CardAgent.h"
#include "tests/support/TemporaryDirectory.h"

class FakeAgent : public host::CardAgent {
  public:
    // Nothing if the agent is not there.
    std::optional<std::vector<pci::FoundCard>> list = std::vector<pci::FoundCard>();
    Host::RightAnswer answer = Host::RightAnswer::granted;
    Host::RightAnswer answerWithoutAsking = Host::RightAnswer::denied;
    bool powersOff = true;
    // What every range of every card is. The file is as long as its pages.
    uint32_t offsetInPage = 0;
    uint32_t bytes = 0x200;
    int access = O_RDWR;
    bool isSealed = false;  // the kernel forbids to map it for writing
    // The calls that change something, in order.
    std::vector<std::string> calls;

    void add(std::string address, std::string name, std::string refusal = "") {
        list->push_back({std::move(address), std::move(name), "PCI slot 1", false, std::move(refusal)});
    }
    // The file that holds a card's range.
    std::filesystem::path file(const std::string& address, uint32_t memoryRange) const {
        return folder_.path() / (address + '.' + std::to_string(memoryRange));
    }

    std::optional<std::vector<pci::FoundCard>> cards() override { return list; }
    Host::RightAnswer claim(bool mayAsk) override {
        calls.emplace_back(mayAsk ? "claim, asking" : "claim");
        return mayAsk ? answer : answerWithoutAsking;
    }
    void letGo() override { calls.emplace_back("let go"); }
    std::optional<pci::OpenedRange> openRange(const std::string& address, uint32_t memoryRange) override {
        if (memoryRange > 1) {
            return std::nullopt;
        }
        const auto path = file(address, memoryRange);
        std::ofstream(path, std::ios::app).close();
        std::filesystem::resize_file(path, 0x10000);
        if (isSealed) {
            const int memory = ::memfd_create("range", MFD_ALLOW_SEALING);
            ::fcntl(memory, F_ADD_SEALS, F_SEAL_WRITE);
            return pci::OpenedRange{files::OpenFile(memory, path), offsetInPage, bytes};
        }
        return pci::OpenedRange{files::OpenFile(AT_FDCWD, path, access, path), offsetInPage, bytes};
    }
    void beginWrite() override { calls.emplace_back("begin"); }
    void endWrite() override { calls.emplace_back("end"); }
    bool powerOff() override {
        calls.emplace_back("power off");
        return powersOff;
    }

  private:
    TemporaryDirectory folder_;
};
