#pragma once

// A stretch of this process's address space that nothing else will be given and nobody can touch: a load or
// store that goes past the host is a crash instead of a wrong answer.

#include <cstddef>

namespace simulator {

class AddressSpace {
  public:
    // Reserves at least so many bytes, on a page boundary. Throws std::bad_alloc when there are none.
    explicit AddressSpace(std::size_t bytes);
    AddressSpace(AddressSpace&& other) noexcept;
    AddressSpace(const AddressSpace&) = delete;
    AddressSpace& operator=(const AddressSpace&) = delete;
    AddressSpace& operator=(AddressSpace&&) = delete;
    ~AddressSpace();

    void* base() const { return base_; }

  private:
    void* base_;
    std::size_t bytes_;
};

}  // namespace simulator
