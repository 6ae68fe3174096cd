#include "images/prom/FirmwareImage.h"

#include <array>
#include <cassert>

#include "simulator/jtag/Fpga.h"
#include "simulator/jtag/Prom.h"
#include "xsvf/Assembler.h"

namespace images {
namespace {

using Assembler = XsvfAssembler<std::vector<uint8_t>>;

using simulator::Fpga;
using simulator::kPageBytes;
using simulator::Prom;

constexpr uint8_t kChainInstructionBits = Prom::kInstructionBits + Fpga::kInstructionBits;

// Every data shift also passes the FPGA's bypass register, which captures 0 and comes out first.
constexpr uint32_t kFpgaBypassBits = 1;
constexpr uint64_t kFpgaBypassMask = 1;

constexpr uint64_t kIdentificationMask = 0x0FFFFFFF;  // without the four bits of the silicon's version
constexpr uint64_t kProgrammingMode = 0x34;

// The number of times that a page is read again if it reads back wrongly.
constexpr uint8_t kReadRetries = 3;

// A page as it is shifted through the chain, most significant byte first. The page's last byte comes first,
// all bits are one place higher than in the page, and the lowest bit is the bypass register's.
using PageValue = std::array<uint8_t, kPageBytes + 1>;

PageValue chainValue(std::span<const uint8_t> page) {
    PageValue chain{};
    for (std::size_t index = 0; index < page.size(); ++index) {
        const std::size_t position = chain.size() - 1 - index;
        chain[position] = static_cast<uint8_t>(chain[position] | page[index] << kFpgaBypassBits);
        chain[position - 1] = static_cast<uint8_t>(page[index] >> (8 - kFpgaBypassBits));
    }
    return chain;
}

std::span<const uint8_t> pageOf(std::span<const uint8_t> prom, uint32_t page) {
    return prom.subspan(page * kPageBytes, kPageBytes);
}

void select(Assembler& xsvf, Prom::Instruction instruction) {
    const uint32_t code = instruction;
    xsvf.XSIR(kChainInstructionBits, code << Fpga::kInstructionBits | Fpga::kBypass);
}

// Gives an instruction and waits for it. The wait is then set to 0, because it would apply to every compared
// shift.
void selectAndWait(Assembler& xsvf, Prom::Instruction instruction, uint32_t microseconds) {
    xsvf.XRUNTEST(microseconds);
    select(xsvf, instruction);
    xsvf.XRUNTEST(0);
}

void setAddress(Assembler& xsvf, uint32_t page) {
    select(xsvf, Prom::addressInstruction);
    xsvf.XSDRSIZE(Prom::kAddressBits + kFpgaBypassBits);
    xsvf.XSDRE(uint64_t{page} * Prom::kPageAddressStep << kFpgaBypassBits);
}

void checkIdentification(Assembler& xsvf) {
    select(xsvf, Prom::identificationInstruction);
    xsvf.XSDRSIZE(Prom::kIdentificationBits + kFpgaBypassBits);
    xsvf.XTDOMASK(kIdentificationMask << kFpgaBypassBits | kFpgaBypassMask);
    xsvf.XSDRTDO(0, uint64_t{Prom::kIdentificationCode} << kFpgaBypassBits);
}

void enterProgramming(Assembler& xsvf) {
    select(xsvf, Prom::enterProgrammingInstruction);
    xsvf.XSDRSIZE(Prom::kModeBits + kFpgaBypassBits);
    xsvf.XSDRE(kProgrammingMode << kFpgaBypassBits);
}

// Only the bypass bit is compared. The PROM has nothing to read yet, but a broken chain is found early.
void programPages(Assembler& xsvf, std::span<const uint8_t> prom) {
    xsvf.XSDRSIZE(kPageBytes * 8 + kFpgaBypassBits);
    xsvf.XTDOMASK(kFpgaBypassMask);
    for (uint32_t page = 0; page < prom.size() / kPageBytes; ++page) {
        setAddress(xsvf, page);
        select(xsvf, Prom::pageDataInstruction);
        xsvf.XSDRSIZE(kPageBytes * 8 + kFpgaBypassBits);
        xsvf.XSDRTDO(chainValue(pageOf(prom, page)), 0);
        selectAndWait(xsvf, Prom::programInstruction, Prom::kProgramMicroseconds);
    }
}

void comparePages(Assembler& xsvf, std::span<const uint8_t> prom) {
    PageValue everyBit;
    everyBit.fill(0xFF);
    xsvf.XSDRSIZE(kPageBytes * 8 + kFpgaBypassBits);
    xsvf.XTDOMASK(everyBit);
    for (uint32_t page = 0; page < prom.size() / kPageBytes; ++page) {
        setAddress(xsvf, page);
        select(xsvf, Prom::readPageInstruction);
        xsvf.XSDRSIZE(kPageBytes * 8 + kFpgaBypassBits);
        xsvf.XSDRTDO(0, chainValue(pageOf(prom, page)));
    }
}

}  // namespace

std::vector<uint8_t> makeFirmwareImage(std::span<const uint8_t> content) {
    assert(content.size() % kPageBytes == 0 && content.size() / kPageBytes <= simulator::kPromPages);
    std::vector<uint8_t> image;
    Assembler xsvf(image);
    xsvf.XREPEAT(kReadRetries);
    xsvf.XSTATE(kTapTestLogicReset);
    xsvf.XSTATE(kTapRunTestIdle);
    checkIdentification(xsvf);
    enterProgramming(xsvf);
    selectAndWait(xsvf, Prom::eraseInstruction, Prom::kEraseMicroseconds);
    programPages(xsvf, content);
    comparePages(xsvf, content);
    selectAndWait(xsvf, Prom::leaveProgrammingInstruction, Prom::kLeaveProgrammingMicroseconds);
    select(xsvf, Prom::bypassInstruction);
    xsvf.XCOMPLETE();
    return image;
}

}  // namespace images
