#include "framework/core/URegistrar.h"

#include <functional>
#include <map>
#include <string>

namespace {

std::map<std::string, URegistrar::Creator, std::less<>>& Creators() {
    static std::map<std::string, URegistrar::Creator, std::less<>> creators;
    return creators;
}

}  // namespace

void URegistrar::RegisterClass(std::string_view name, Creator creator) {
    Creators().insert_or_assign(std::string(name), creator);
}

std::unique_ptr<LAttachable> URegistrar::CreateObject(std::string_view name) {
    const auto found = Creators().find(name);
    return found == Creators().end() ? nullptr : found->second();
}
