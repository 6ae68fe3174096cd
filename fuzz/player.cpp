// Any bytes as a firmware image, played through the JTAG port on a simulated card with its PROM.

#include <cstring>
#include <memory>
#include <vector>

#include "app/logic/FirmwareImage.h"
#include "card/Registers.h"
#include "fuzz/ImpatientHost.h"
#include "fuzz/Require.h"
#include "hw/ApplicationHooks.h"
#include "hw/JtagPort.h"
#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/Machine.h"
#include "xsvf/JtagPort.h"

void AllowNextEvent() {}
void UpdateProgressBar(uint32_t bytes) {
    require(bytes == gulCurrentOffset && bytes % kProgressBytes == 0, "progress is reported when it is due");
}

namespace {

using namespace simulator;

constexpr std::size_t kLongestImage = 4096;

// Enough for an image that writes a page and reads it back.
constexpr uint64_t kMostLoads = 450'000;

constexpr uint64_t kLeap = 1000 * Clock::kAccessesPerMicrosecond;

constexpr FpgaConfiguration kFirmware{
    .modelCode = 0x21, .boardRevision = 1, .flavour = 'M', .version = 10, .date = 0x4511};
constexpr uint32_t kIdentity = 0x21307015;

class Bench {
  public:
    Bench() {
        card_.cells().setWriteThrough(
            [this](std::size_t, std::span<const uint8_t>) { cellsChanged_ = true; });
        machine_.powerOn();
        const auto connection =
            impatient_.openService(impatient_.servicesOfClass(card_driver::kServiceClass).at(0));
        gpRegisters = static_cast<uint32_t*>(impatient_.mapMemory(connection.value(), 0).value().base);
        std::memset(buffer_.get() + kLongestImage, kGuardByte, kGuardBytes);
    }

    void play(const uint8_t* data, std::size_t size) {
        reset();
        // The guard ends where the buffer does, so the sanitizer notices a read past it.
        uint8_t* const image = buffer_.get() + kLongestImage - size;
        std::memcpy(image, data, size);
        tagSXsvfInfo info;
        try {
            PlayOnCard(&info, image, static_cast<uint32_t>(size));
            require(info.ucIsComplete == (info.iResult == kXsvfNoError ? 1 : 0),
                    "a run ends well or in an error");
        } catch (const ImpatientHost::OutOfTime&) {
            idlePort();
        }
        check(info, size);
    }

  private:
    void reset() {
        if (cellsChanged_) {
            card_.cells().assign(pristine_);
        }
        cellsChanged_ = false;
        machine_.ledger().restore({});
        machine_.clock().resume(0);
        card_.chain().losePower();
        card_.resume(kFirmware, 0);
        impatient_.loadsLeft = kMostLoads;
    }

    void check(const tagSXsvfInfo& info, std::size_t size) {
        require(info.iResult >= kXsvfNoError && info.iResult <= kXsvfDataOverflow,
                "the error is one of the player's");
        require(info.lCommandsRead >= 1 && static_cast<uint32_t>(info.lCommandsRead) <= gulCurrentOffset,
                "each command has at least one byte");
        require(gulCurrentOffset <= size + kGuardBytes, "the player never reads past the guard");
        require(card_.jtagOutput() == kJtagActivity, "the port is left idle");
        for (const Ledger::Entry& entry : machine_.ledger().entries()) {
            require(!entry.detail.empty() && entry.times > 0 && entry.misuse != Misuse::strayAccess,
                    "only misuse of the PROM is recorded");
        }
        require(cellsChanged_ ||
                    std::memcmp(card_.cells().bytes().data(), pristine_.data(), pristine_.size()) == 0,
                "every change of a cell is reported");
        require(identificationCode() == Prom::kIdentificationCode, "the chain still answers");
        require(card_.cells().protection() <= PromCells::kProtectionMask, "the PROM's bits are bits");
    }

    // Reads it from the chain directly, which takes no simulated time.
    uint32_t identificationCode() {
        JtagChain& chain = card_.chain();
        const auto clock = [&](bool tms) {
            chain.drive(true, tms, true);
            chain.drive(false, tms, true);
        };
        for (const bool tms : {true, true, true, true, true, false, true, false, false, false}) {
            clock(tms);  // a reset, then to Shift-DR and past the FPGA's bit
        }
        uint32_t code = 0;
        for (unsigned bit = 0; bit < Prom::kIdentificationBits; ++bit) {
            code |= (chain.tdo() ? uint32_t{1} : 0) << bit;
            clock(false);
        }
        return code;
    }

    const std::vector<uint8_t> pristine_ = [] {
        const PromCells cells(encodeConfiguration(kFirmware), kIdentity, PromCells::kProtectionMask);
        return std::vector<uint8_t>(cells.bytes().begin(), cells.bytes().end());
    }();
    std::unique_ptr<uint8_t[]> buffer_ = std::make_unique<uint8_t[]>(kLongestImage + kGuardBytes);
    Machine machine_;
    Card& card_ = machine_.addCard(
        {"VornMX-B", "PCI slot 1", kFirmware.modelCode, kFirmware.boardRevision},
        PromCells(std::span(pristine_).first(kPromBytes), kIdentity, PromCells::kProtectionMask));
    SimulatedHost host_{machine_, {}};
    ImpatientHost impatient_{host_, [this] { machine_.clock().advance(kLeap); }};
    bool cellsChanged_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static Bench bench;
    if (size <= kLongestImage) {
        bench.play(data, size);
    }
    return 0;
}
