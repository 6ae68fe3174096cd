#include "linux/host/RangeMapping.h"

#include <sys/mman.h>

#include <cerrno>
#include <utility>

#include "linux/pci/base/Refusals.h"

namespace host {
namespace {

std::size_t wholePages(std::size_t bytes) {
    const std::size_t page = pci::pageBytes();
    return (bytes + page - 1) / page * page;
}

}  // namespace

RangeMapping::RangeMapping(const pci::OpenedRange& range) : bytes_(range.bytes), refusal_(map(range)) {}

std::string RangeMapping::map(const pci::OpenedRange& range) {
    if (range.bytes < pci::kRegisterBytes) {
        return pci::refusals::kNoWindow;
    }
    pagesBytes_ = wholePages(std::size_t{range.offsetInPage} + range.bytes);
    void* const pages =
        ::mmap(nullptr, pagesBytes_, PROT_READ | PROT_WRITE, MAP_SHARED, range.file.descriptor(), 0);
    if (pages == MAP_FAILED) {
        return pci::refusals::mapping(errno);
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

}  // namespace host
