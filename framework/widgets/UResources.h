#pragma once

// The layouts and the icon. Layouts are Qt Designer files named for their kind and number ("window-128.ui"),
// the icon is a picture in each of several sizes ("icon-16.png"), and all are in the folder that the
// application uses (LApplication::UseResources).

#include <cstdint>
#include <memory>

class QWidget;

namespace UResources {

// Builds what the file <kind>-<id>.ui describes, from classes in the class registry and of Qt. Null, with one
// line on standard error, if the file is missing or malformed.
std::unique_ptr<QWidget> LoadLayout(const char* kind, int32_t id);

// Gives the program's windows their icon once the first of them has been drawn, which would otherwise have to
// wait for the pictures. Without pictures there is none.
void UseIcon();

}  // namespace UResources
