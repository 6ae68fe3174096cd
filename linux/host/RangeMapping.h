#pragma once

// One of a card's memory ranges in this process's address space.

#include <cstddef>
#include <cstdint>
#include <string>

#include "linux/pci/base/MemoryRange.h"

namespace host {

class RangeMapping {
  public:
    // Maps the whole pages that hold the range, for reading and writing. Its file need not stay open. If the
    // range is too small for a card's or cannot be mapped, base() is null and refusal() says why.
    explicit RangeMapping(const pci::OpenedRange& range);
    // The other one no longer owns the pages.
    RangeMapping(RangeMapping&& other) noexcept;
    RangeMapping(const RangeMapping&) = delete;
    RangeMapping& operator=(const RangeMapping&) = delete;
    RangeMapping& operator=(RangeMapping&&) = delete;
    // Removes the pages but keeps their addresses reserved; a later access ends the program rather than
    // reaching other memory.
    ~RangeMapping();

    // Of the range itself, which may begin within a page.
    uint8_t* base() const { return base_; }
    uint32_t bytes() const { return bytes_; }
    // One of pci::refusals; empty if the range is mapped.
    const std::string& refusal() const { return refusal_; }

  private:
    // Returns the refusal; empty if the range is mapped.
    [[nodiscard]] std::string map(const pci::OpenedRange& range);

    void* pages_ = nullptr;
    std::size_t pagesBytes_ = 0;
    uint8_t* base_ = nullptr;
    uint32_t bytes_;
    std::string refusal_;
};

}  // namespace host
