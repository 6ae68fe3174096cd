#pragma once

// The layouts: Qt Designer files named for their kind and number ("window-128.ui") in one folder.

#include <cstdint>
#include <filesystem>
#include <memory>

class QWidget;

namespace UResources {

// Names the folder, usually the bundle's Contents/Resources. The process entry calls this before anything is
// loaded; until then there are no layouts.
void UseFolder(const std::filesystem::path& folder);

// Builds what the file <kind>-<id>.ui describes, making the classes that the class registry knows and leaving
// the others to Qt. Null, with one line on standard error, when the file is missing or malformed.
std::unique_ptr<QWidget> LoadLayout(const char* kind, int32_t id);

}  // namespace UResources
