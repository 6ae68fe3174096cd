#pragma once

// The class registry: which classes a layout may name, and how to make an object of each.

#include <memory>
#include <string_view>

#include "framework/core/LAttachable.h"

namespace URegistrar {

using Creator = std::unique_ptr<LAttachable> (*)();

// Registering a name again replaces its creator, so registering a class twice is harmless.
void RegisterClass(std::string_view name, Creator creator);

// Registers a class under its own name, Class::kClassName; it must have a default constructor.
template <typename Class>
void RegisterClass() {
    RegisterClass(Class::kClassName, [] { return std::unique_ptr<LAttachable>(std::make_unique<Class>()); });
}

// A new object of the class, or null if the name is not registered.
std::unique_ptr<LAttachable> CreateObject(std::string_view name);

}  // namespace URegistrar
