#pragma once

// A driver's bundle: a folder whose Contents/Info.plist, an XML property list, says what the driver is.

#include <filesystem>
#include <optional>
#include <string>

namespace simulator {

struct DriverBundle {
    std::string identifier;    // CFBundleIdentifier
    std::string serviceClass;  // IOClass of the first of the IOKitPersonalities
};

// Nothing if the folder is not a well-formed driver bundle (CFBundlePackageType KEXT).
[[nodiscard]] std::optional<DriverBundle> readDriverBundle(const std::filesystem::path& folder);

}  // namespace simulator
