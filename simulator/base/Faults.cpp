#include "simulator/base/Faults.h"

#include <algorithm>

namespace simulator {

const std::array<FaultKindDescription, kFaultKinds>& faultKinds() {
    static constexpr std::array<FaultKindDescription, kFaultKinds> kDescriptions{{
        {.name = "tdo-low", .meaning = "TDO is stuck at 0"},
        {.name = "tdo-high", .meaning = "TDO is stuck at 1"},
        {.name = "chain-broken", .meaning = "the JTAG chain is broken"},
        {.name = "foreign-identification",
         .meaning = "the PROM has a foreign identification code",
         .hasCode = true},
        {.name = "page-not-taken", .meaning = "a page of the PROM does not take its data", .hasPage = true},
        {.name = "page-misread",
         .meaning = "a page of the PROM reads back wrongly a number of times",
         .hasPage = true,
         .hasTimes = true},
        {.name = "user-code-not-taken", .meaning = "the PROM does not take its user code"},
        {.name = "slow-programming",
         .meaning = "programming takes a multiple of the data sheet's time",
         .hasFactor = true},
        {.name = "power-lost", .meaning = "the machine loses its power"},
        {.name = "machine-sleeps",
         .meaning = "the machine goes to sleep and wakes again, unless that is prevented",
         .canBePrevented = true},
        {.name = "card-vanished", .meaning = "the card vanishes from the bus"},
        {.name = "service-not-opened", .meaning = "the card's service cannot be opened"},
        {.name = "service-not-mapped", .meaning = "the card's memory cannot be mapped"},
        {.name = "service-silent", .meaning = "the driver gives no information about the card"},
    }};
    static_assert(!kDescriptions.back().name.empty(), "every kind has a description");
    return kDescriptions;
}

void Faults::add(const Fault& fault) {
    std::erase_if(faults_, [&](const Fault& each) {
        return each.kind == fault.kind && (!describe(fault.kind).hasPage || each.page == fault.page);
    });
    faults_.push_back(fault);
}

std::size_t Faults::remove(FaultKind kind) {
    return std::erase_if(faults_, [=](const Fault& fault) { return fault.kind == kind; });
}

bool Faults::strike(uint64_t accesses, uint64_t clocks) {
    bool any = false;
    for (Fault& fault : faults_) {
        const uint64_t reached = fault.when == Fault::When::atClock ? clocks : accesses;
        if (fault.struck || (fault.when != Fault::When::atOnce && reached < fault.count)) {
            continue;
        }
        fault.struck = true;
        any = true;
    }
    return any;
}

void Faults::notePrevented(FaultKind kind) {
    for (Fault& fault : faults_) {
        fault.prevented = fault.prevented || (fault.struck && fault.kind == kind);
    }
}

std::optional<uint64_t> Faults::nextCount(Fault::When when) const {
    std::optional<uint64_t> next;
    for (const Fault& fault : faults_) {
        if (!fault.struck && fault.when == when && fault.count < next.value_or(UINT64_MAX)) {
            next = fault.count;
        }
    }
    return next;
}

std::optional<uint32_t> Faults::foreignIdentification() const {
    const Fault* const fault = struck(FaultKind::foreignIdentification);
    return fault != nullptr ? std::optional(fault->code) : std::nullopt;
}

uint32_t Faults::programmingFactor() const {
    const Fault* const fault = struck(FaultKind::slowProgramming);
    return fault != nullptr ? fault->factor : 1;
}

bool Faults::takesPage(std::size_t page) const {
    return std::ranges::none_of(faults_, [=](const Fault& fault) {
        return fault.struck && fault.kind == FaultKind::pageNotTaken && fault.page == page;
    });
}

bool Faults::consumeMisread(std::size_t page) {
    const auto found = std::ranges::find_if(faults_, [=](const Fault& fault) {
        return fault.struck && fault.kind == FaultKind::pageMisread && fault.page == page;
    });
    if (found == faults_.end() || found->times == 0) {
        return false;
    }
    --found->times;
    return true;
}

const Fault* Faults::struck(FaultKind kind) const {
    const auto found =
        std::ranges::find_if(faults_, [=](const Fault& fault) { return fault.struck && fault.kind == kind; });
    return found != faults_.end() ? &*found : nullptr;
}

}  // namespace simulator
