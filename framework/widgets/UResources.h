#pragma once

// The layouts and the icon. Layouts are Qt Designer files named for their kind and number ("window-128.ui"),
// the icon is a picture in each of several sizes ("icon-16.png"), and all are in one folder.

#include <QIcon>
#include <cstdint>
#include <filesystem>
#include <memory>

class QWidget;

namespace UResources {

// Sets the folder, usually the bundle's Contents/Resources. The process entry calls this before anything is
// loaded; until then there are no layouts.
void UseFolder(const std::filesystem::path& folder);

// Builds what the file <kind>-<id>.ui describes, from classes in the class registry and of Qt. Null, with one
// line on standard error, if the file is missing or malformed.
std::unique_ptr<QWidget> LoadLayout(const char* kind, int32_t id);

// The icon; empty if its pictures are missing.
QIcon LoadIcon();

}  // namespace UResources
