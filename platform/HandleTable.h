#pragma once

// Objects behind the small numbers or opaque pointers that the Mac services hand out.

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

// Objects by handle, each held by the one reference that its maker received. Handles start above 0xFFFF, so
// that none is ever mistaken for an index, and are not used twice. An unknown handle is answered with null or
// false, never with a crash: the updater closes a number that was never a handle, and must get away with it.
template <typename Object>
class HandleTable {
  public:
    using Handle = uint32_t;

    // Takes an object in with one reference, which the caller owns.
    Handle add(Object object) {
        const Handle handle = next_;
        next_ += 4;
        entries_.emplace(handle, std::move(object));
        return handle;
    }

    Object* find(Handle handle) {
        const auto entry = entries_.find(handle);
        return entry == entries_.end() ? nullptr : &entry->second;
    }

    // Gives the reference back, which destroys the object.
    bool release(Handle handle) { return entries_.erase(handle) != 0; }

    std::size_t size() const { return entries_.size(); }

  private:
    std::map<Handle, Object> entries_;
    Handle next_ = 0x10003;
};
