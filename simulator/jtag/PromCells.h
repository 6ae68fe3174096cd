#pragma once

// What a PROM keeps without power: its pages, user code and protection bits. The bytes are those of a PROM
// file.
//
//   offset  bytes  content
//        0 262144  512 pages of 512 bytes; bit b of byte i is bit i * 8 + b of the page
//   262144      4  user code, big-endian
//   262148      1  protection bits, in the lowest three

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace simulator {

// The configuration, in the pages that it is programmed and read by.
constexpr std::size_t kPromPages = 512;
constexpr std::size_t kPageBytes = 512;
constexpr std::size_t kPromBytes = kPromPages * kPageBytes;

class PromCells {
  public:
    static constexpr std::size_t kUserCodeAt = kPromBytes;
    static constexpr std::size_t kProtectionAt = kUserCodeAt + 4;
    static constexpr std::size_t kBytes = kProtectionAt + 1;
    static constexpr uint8_t kProtectionMask = 0b111;
    static constexpr uint32_t kErasedUserCode = 0xFFFFFFFF;

    // Bytes that are programmed together.
    struct Row {
        std::size_t offset;
        std::size_t bytes;
    };
    static constexpr Row kEverything{0, kBytes};
    static constexpr Row kUserCode{kUserCodeAt, 4};
    static constexpr Row kProtection{kProtectionAt, 1};
    static constexpr Row page(std::size_t number) { return {number * kPageBytes, kPageBytes}; }

    // Called after every change with the changed bytes, which begin at `offset`.
    using WriteThrough = std::function<void(std::size_t offset, std::span<const uint8_t> bytes)>;

    // Erased.
    PromCells() : bytes_(kBytes, 0xFF) { bytes_[kProtectionAt] = kProtectionMask; }
    // With pages (kPromBytes, as encodeConfiguration makes them), a user code and protection bits.
    PromCells(std::span<const uint8_t> pages, uint32_t userCode, uint8_t protection);
    // From the bytes of a PROM file (kBytes).
    explicit PromCells(std::vector<uint8_t> image);
    PromCells(PromCells&&) = default;
    PromCells& operator=(PromCells&&) = delete;  // assign() writes through

    std::span<const uint8_t> bytes() const { return bytes_; }
    std::span<const uint8_t> pages() const { return bytes().first(kPromBytes); }
    std::span<const uint8_t> bytesOf(Row row) const { return bytes().subspan(row.offset, row.bytes); }
    uint32_t userCode() const;
    uint8_t protection() const { return bytes_[kProtectionAt] & kProtectionMask; }
    bool isPageErased(std::size_t number) const;

    // Clears the bits of a page that are 0 in `data` (kPageBytes).
    void programPage(std::size_t number, std::span<const uint8_t> data);
    void setUserCode(uint32_t userCode);
    void setProtection(uint8_t protection);
    void erase();
    // Replaces everything (kBytes).
    void assign(std::span<const uint8_t> image);

    // Flips a scatter of a row's bits, always the same ones, so a second call repairs them.
    void toggleDamage(Row row);

    void setWriteThrough(WriteThrough writeThrough) { writeThrough_ = std::move(writeThrough); }

  private:
    void changed(Row row);

    std::vector<uint8_t> bytes_;
    WriteThrough writeThrough_;
};

}  // namespace simulator
