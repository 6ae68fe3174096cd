#include "simulator/guest/plugin/CardMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstring>

#include "files/FileError.h"
#include "files/OpenFile.h"

namespace simulator {
namespace {

uint32_t byMostSignificantFirst(uint32_t word) {
    return std::endian::native == std::endian::big ? word : __builtin_bswap32(word);
}

}  // namespace

CardMemory::CardMemory(const std::filesystem::path& file) {
    const files::OpenFile open(AT_FDCWD, file, O_RDWR | O_CREAT | O_CLOEXEC, file, "could not be created");
    if (::ftruncate(open.descriptor(), kBytes) != 0) {
        throw files::FileError(file, "could not be given its length", errno);
    }
    void* const there = ::mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_SHARED, open.descriptor(), 0);
    if (there == MAP_FAILED) {
        throw files::FileError(file, "could not be mapped", errno);
    }
    bytes_ = static_cast<uint8_t*>(there);
}

CardMemory::~CardMemory() {
    ::munmap(bytes_, kBytes);
}

uint32_t CardMemory::at(uint32_t offset) const {
    uint32_t word = 0;
    std::memcpy(&word, bytes_ + offset, sizeof(word));
    return byMostSignificantFirst(word);
}

void CardMemory::put(uint32_t offset, uint32_t word) {
    word = byMostSignificantFirst(word);
    std::memcpy(bytes_ + offset, &word, sizeof(word));
}

void CardMemory::show(const RegisterWindow& window) {
    for (uint32_t offset = 0; offset < kBytes; offset += sizeof(uint32_t)) {
        put(offset, shouldBe(window, offset));
    }
}

}  // namespace simulator
