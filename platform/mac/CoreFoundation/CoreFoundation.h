#pragma once

// The application's bundle, its resources, and the values in which they are handed out.
//
// Names and rules of ownership are the Mac's: what a function with Copy or Create in its name returns belongs
// to the caller, who gives it back with CFRelease; what a Get function returns does not.

#include <cstddef>
#include <cstdint>

using Boolean = uint8_t;
using CFIndex = int32_t;

using CFTypeRef = const void*;
using CFStringRef = const struct OpaqueCFString*;
using CFURLRef = const struct OpaqueCFURL*;
using CFArrayRef = const struct OpaqueCFArray*;
using CFBundleRef = struct OpaqueCFBundle*;
using CFMutableDictionaryRef = struct OpaqueCFDictionary*;

// A constant string, made of a literal and never released.
template <std::size_t bytes>
CFStringRef CFSTR(const char (&literal)[bytes]) {
    return reinterpret_cast<CFStringRef>(literal);
}

// Nothing here retains an object, so this destroys it. An array's elements go with it.
void CFRelease(CFTypeRef object);

// The running application's bundle, or null if it has none.
CFBundleRef CFBundleGetMainBundle();

// The URL of the bundle's resource folder, whether or not it is there.
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

// The URL of the resource file with a name and a type (its extension; null for a file without one). A null
// subdirectory means the resource folder itself. Null if there is no such file.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory);

// The URLs of all resources of a type (their extension), in the order of their names. A null subdirectory
// means the resource folder itself. Null if the bundle has no such folder.
CFArrayRef CFBundleCopyResourceURLsOfType(CFBundleRef bundle, CFStringRef type, CFStringRef subdirectory);

CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

// Writes the URL's file-system path, NUL-terminated, into a buffer. False, leaving the buffer alone, if the
// path does not fit in bufferBytes.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, uint8_t* buffer,
                                         CFIndex bufferBytes);
