#include "linux/host/RangeMapping.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace {

std::size_t wholePages(std::size_t bytes) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return (bytes + page - 1) / page * page;
}

std::string reasonOf(int error) {
    switch (error) {
        case EPERM:
            return "The kernel does not let programs reach its registers, probably because of Secure Boot. "
                   "Switch Secure Boot off in the computer's firmware settings.";
        case EINVAL:
            return "Its registers cannot be reached, probably because a driver uses them. Unload that "
                   "driver.";
        default:
            return std::string("Its registers cannot be reached: ") + std::strerror(error) + '.';
    }
}

}  // namespace

RangeMapping::RangeMapping(const CardAgent::Range& range) : bytes_(range.bytes), refusal_(map(range)) {
    ::close(range.descriptor);
}

std::string RangeMapping::map(const CardAgent::Range& range) {
    if (range.bytes < kLeastBytes) {
        return "Its memory range has " + std::to_string(range.bytes) + " bytes; its registers need " +
               std::to_string(kLeastBytes) + '.';
    }
    pagesBytes_ = wholePages(std::size_t{range.offsetInPage} + range.bytes);
    void* const pages = ::mmap(nullptr, pagesBytes_, PROT_READ | PROT_WRITE, MAP_SHARED, range.descriptor, 0);
    if (pages == MAP_FAILED) {
        return reasonOf(errno);
    }
    pages_ = pages;
    base_ = static_cast<uint8_t*>(pages) + range.offsetInPage;
    return "";
}

RangeMapping::RangeMapping(RangeMapping&& other) noexcept
    : pages_(std::exchange(other.pages_, nullptr)),
      pagesBytes_(other.pagesBytes_),
      base_(other.base_),
      bytes_(other.bytes_),
      refusal_(std::move(other.refusal_)) {}

RangeMapping::~RangeMapping() {
    if (pages_ != nullptr &&
        ::mmap(pages_, pagesBytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1,
               0) == MAP_FAILED) {
        ::munmap(pages_, pagesBytes_);
    }
}
