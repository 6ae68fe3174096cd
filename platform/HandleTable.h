#pragma once

// Objects behind the small numbers or opaque pointers that the Mac services hand out.

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

// Reference-counted objects by handle. Handles start above 0xFFFF, so that none is ever mistaken for an
// index, and are not used twice. An unknown handle is answered with null or false, never with a crash: the
// updater closes a number that was never a handle, and must get away with it.
template <typename Object>
class HandleTable {
  public:
    using Handle = uint32_t;

    // Takes an object in with one reference, which the caller owns.
    Handle add(Object object) {
        const Handle handle = next_;
        next_ += 4;
        entries_.emplace(handle, Entry{std::move(object), 1});
        return handle;
    }

    Object* find(Handle handle) {
        const auto entry = entries_.find(handle);
        return entry == entries_.end() ? nullptr : &entry->second.object;
    }

    bool retain(Handle handle) {
        const auto entry = entries_.find(handle);
        if (entry == entries_.end()) {
            return false;
        }
        ++entry->second.references;
        return true;
    }

    // Gives one reference back and destroys the object with the last.
    bool release(Handle handle) {
        const auto entry = entries_.find(handle);
        if (entry == entries_.end()) {
            return false;
        }
        if (--entry->second.references == 0) {
            entries_.erase(entry);
        }
        return true;
    }

    std::size_t size() const { return entries_.size(); }

  private:
    struct Entry {
        Object object;
        int references;
    };
    std::map<Handle, Entry> entries_;
    Handle next_ = 0x10003;
};
