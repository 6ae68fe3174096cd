#pragma once

// A reserved, inaccessible stretch of this process's address space: a load or store that bypasses the host
// crashes instead of giving a wrong answer.

#include <cstddef>

namespace simulator {

class AddressSpace {
  public:
    // Reserves at least this many bytes, on a page boundary. Throws std::bad_alloc if there are none.
    explicit AddressSpace(std::size_t bytes);
    AddressSpace(AddressSpace&& other) noexcept;
    AddressSpace(const AddressSpace&) = delete;
    AddressSpace& operator=(const AddressSpace&) = delete;
    AddressSpace& operator=(AddressSpace&&) = delete;
    ~AddressSpace();

    // The first address, reserved until this object is gone.
    void* base() const { return base_; }

  private:
    void* base_;
    std::size_t bytes_;
};

}  // namespace simulator
