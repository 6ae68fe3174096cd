#include "tests/whole/TwoPageImage.h"

#include <array>

#include "simulator/Fpga.h"
#include "simulator/Prom.h"
#include "xsvf/Assembler.h"

using simulator::Prom;

std::vector<uint8_t> twoPageImage(const TwoPageRecipe& recipe) {
    std::vector<uint8_t> image;
    XsvfAssembler<std::vector<uint8_t>> xsvf(image);
    const auto select = [&](Prom::Instruction instruction, uint32_t wait = 0) {
        xsvf.XRUNTEST(wait);
        xsvf.XSIR(13, uint32_t{instruction} << 5 | simulator::Fpga::kBypass);
        xsvf.XRUNTEST(0);
    };
    const auto atPage = [&](uint32_t page, Prom::Instruction instruction) {
        select(Prom::addressInstruction);
        xsvf.XSDRSIZE(17);
        xsvf.XSDRE(page * Prom::kPageAddressStep << 1);
        select(instruction);
        xsvf.XSDRSIZE(4097);
    };
    std::array<uint8_t, 513> everyBit;
    everyBit.fill(0xFF);
    xsvf.XREPEAT(3);
    xsvf.XSTATE(kTapRunTestIdle);
    select(Prom::identificationInstruction);
    xsvf.XSDRSIZE(33);
    xsvf.XTDOMASK(0x1FFFFFFFF);
    xsvf.XSDRTDO(0, uint64_t{Prom::kIdentificationCode} << 1);
    select(Prom::enterProgrammingInstruction);
    xsvf.XSDRSIZE(7);
    xsvf.XSDRE(0x34 << 1);
    if (recipe.erases) {
        select(Prom::eraseInstruction, recipe.eraseMicroseconds);
    }
    for (const uint32_t page : {0U, 1U}) {
        atPage(page, Prom::pageDataInstruction);
        xsvf.XTDOMASK(1);
        xsvf.XSDRTDO(uint64_t{pageByte(page)} << 1, 0);
        select(Prom::programInstruction, recipe.programMicroseconds);
    }
    for (const uint32_t page : {0U, 1U}) {
        atPage(page, Prom::readPageInstruction);
        xsvf.XTDOMASK(everyBit);
        xsvf.XSDRTDO(0, uint64_t{pageByte(page)} << 1);
    }
    xsvf.XCOMPLETE();
    return image;
}

std::vector<uint8_t> wantedPage(uint32_t page) {
    std::vector<uint8_t> content(512);
    content[0] = pageByte(page);
    return content;
}
