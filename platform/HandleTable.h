#pragma once

// Objects behind the small numbers and opaque pointers that the Mac services hand out.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <type_traits>
#include <utility>

// Objects by handle: a number, or a pointer that is never dereferenced. Handles start above 0xFFFF, so that
// none can be mistaken for an index, and are never reused. An unknown handle gives null or false, never a
// crash: the updater does close a number that was never a handle.
template <typename Handle, typename Object>
class HandleTable {
  public:
    // Tables whose handles must differ start at different numbers less than 4 apart.
    explicit HandleTable(uint32_t first = 0x10003) : mNext(first) {}

    Handle add(Object object) {
        const uintptr_t number = mNext;
        mNext += 4;
        mEntries.emplace(number, std::move(object));
        if constexpr (std::is_pointer_v<Handle>) {
            return std::bit_cast<Handle>(number);
        } else {
            return static_cast<Handle>(number);
        }
    }

    Object* find(Handle handle) {
        const auto entry = mEntries.find(numberOf(handle));
        return entry == mEntries.end() ? nullptr : &entry->second;
    }

    // Destroys the object; false if there is none.
    bool release(Handle handle) { return mEntries.erase(numberOf(handle)) != 0; }

    std::size_t size() const { return mEntries.size(); }

  private:
    static uintptr_t numberOf(Handle handle) {
        if constexpr (std::is_pointer_v<Handle>) {
            return reinterpret_cast<uintptr_t>(handle);
        } else {
            return handle;
        }
    }

    std::map<uintptr_t, Object> mEntries;
    uintptr_t mNext;
};
