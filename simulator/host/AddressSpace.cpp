#include "simulator/host/AddressSpace.h"

#include <sys/mman.h>

#include <new>
#include <utility>

namespace simulator {

AddressSpace::AddressSpace(std::size_t bytes)
    : base_(::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)),
      bytes_(bytes) {
    if (base_ == MAP_FAILED) {
        throw std::bad_alloc();
    }
}

AddressSpace::AddressSpace(AddressSpace&& other) noexcept
    : base_(std::exchange(other.base_, nullptr)), bytes_(other.bytes_) {}

AddressSpace::~AddressSpace() {
    if (base_ != nullptr) {
        ::munmap(base_, bytes_);
    }
}

}  // namespace simulator
