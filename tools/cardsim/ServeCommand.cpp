#include <bit>
#include <charconv>
#include <exception>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>

#include "files/UserError.h"
#include "simulator/guest/proxy/GuestSession.h"
#include "simulator/storage/PowerLoss.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/command_line/CommandLine.h"

namespace cardsim {
namespace {

using simulator::GuestSession;
using simulator::MachineDirectory;
using simulator::PciFunction;

struct ServeOptions {
    std::string folder;
    std::vector<std::string> command;
    std::string identifiers, subsystem, classCode, registers, memory;
};

struct Identifiers {
    uint16_t vendor;
    uint16_t device;
};

constexpr std::size_t kIdentifierDigits = 4;
constexpr std::size_t kClassDigits = 6;

// Nothing unless all of the text is a number.
std::optional<uint32_t> parseNumber(std::string_view text, int base) {
    uint32_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return stop == end && error == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<uint32_t> parseHexadecimal(std::string_view text, std::size_t digits) {
    return text.size() == digits ? parseNumber(text, 16) : std::nullopt;
}

std::optional<Identifiers> parseIdentifiers(std::string_view text) {
    const std::size_t colon = text.find(':');
    const auto vendor = parseHexadecimal(text.substr(0, colon), kIdentifierDigits);
    const auto device =
        colon != text.npos ? parseHexadecimal(text.substr(colon + 1), kIdentifierDigits) : std::nullopt;
    if (!vendor || !device) {
        return std::nullopt;
    }
    return Identifiers{.vendor = static_cast<uint16_t>(*vendor), .device = static_cast<uint16_t>(*device)};
}

std::optional<uint32_t> parseClass(std::string_view text) {
    return parseHexadecimal(text, kClassDigits);
}

std::optional<PciFunction::Range> parseRange(std::string_view text) {
    const std::size_t colon = text.find(':');
    const auto bar = parseNumber(text.substr(0, colon), 10);
    const auto bytes = colon != text.npos ? parseNumber(text.substr(colon + 1), 10) : std::nullopt;
    const bool isRange = bar && bytes && *bar < simulator::kPciBars && std::has_single_bit(*bytes) &&
                         *bytes >= PciFunction::Range::kLeastBytes &&
                         *bytes <= PciFunction::Range::kMostBytes;
    return isRange ? std::optional(PciFunction::Range{.bar = *bar, .bytes = *bytes}) : std::nullopt;
}

bool isRangeOrNone(const std::string& text) {
    return text == "none" || parseRange(text);
}

PciFunction functionFrom(const ServeOptions& options) {
    PciFunction function;
    if (const auto given = parseIdentifiers(options.identifiers)) {
        function.vendor = function.subsystemVendor = given->vendor;
        function.device = function.subsystemDevice = given->device;
    }
    if (const auto given = parseIdentifiers(options.subsystem)) {
        function.subsystemVendor = given->vendor;
        function.subsystemDevice = given->device;
    }
    function.classCode = parseClass(options.classCode).value_or(function.classCode);
    function.registers = parseRange(options.registers).value_or(function.registers);
    if (!options.memory.empty()) {
        function.memory = parseRange(options.memory);
    }
    if (function.memory && function.memory->bar == function.registers.bar) {
        tools::refuseUsage("--registers and --memory need different base address registers.");
    }
    return function;
}

// Runs the guest and leaves the machine off and saved, whatever happens. Returns the exit code.
int runGuest(MachineDirectory& directory, const PciFunction& function, const ServeOptions& options,
             std::ostream& out) {
    simulator::Machine& machine = directory.machine();
    std::exception_ptr failure;
    std::string report;
    int exitCode = simulator::kPowerWasLost;
    try {
        GuestSession session(machine, function);
        if (machine.isOn()) {
            exitCode = session.run(options.command);
        }
        report = session.report();
    } catch (const files::UserError&) {
        failure = std::current_exception();
    }
    const bool powerWasLost = !machine.isOn();
    machine.powerOff();
    directory.save();
    machine.endRecordings();
    if (failure) {
        std::rethrow_exception(failure);
    }
    out << report << (powerWasLost ? simulator::kPowerLossMessage : "The machine is off.") << '\n';
    return powerWasLost ? simulator::kPowerWasLost : exitCode;
}

void serve(const ServeOptions& options, std::ostream& out) {
    const PciFunction function = functionFrom(options);
    const auto directory = MachineDirectory::open(options.folder, MachineDirectory::OnOpening::powerUp);
    directory->machine().beginRecordings();
    // Programs that look at the machine meanwhile must see that it is on.
    directory->save();
    const int exitCode = runGuest(*directory, function, options, out);
    if (exitCode != tools::kDone) {
        tools::exitWith(exitCode);
    }
}

void addFunction(CLI::App& command, ServeOptions& options) {
    const auto add = [&](const char* name, std::string& into, const char* description, const auto& isTaken,
                         const char* form, const char* type) {
        command.add_option(name, into, description)->check(tools::takenBy(isTaken, form))->type_name(type);
    };
    const char* const identifiersForm =
        "Identifiers are four hexadecimal digits, a colon and four more, such as fade:ca4d.";
    add("--identifiers", options.identifiers,
        "The cards' vendor and device on the bus (default: fade:ca4d, which no real device has)",
        parseIdentifiers, identifiersForm, "VENDOR:DEVICE");
    add("--subsystem", options.subsystem, "Their subsystem vendor and subsystem (default: as --identifiers)",
        parseIdentifiers, identifiersForm, "VENDOR:DEVICE");
    add("--class", options.classCode, "Their class code (default: ff0000, an unassigned class)", parseClass,
        "A class code is six hexadecimal digits, such as ff0000.", "CLASS");
    const char* const rangeForm =
        "A range is the number of a base address register, 0 to 5, a colon and a number of bytes, a power of "
        "two from 16 to 16777216, such as 0:4096.";
    add("--registers", options.registers,
        "Base address register of their registers, and its size (default: 0:4096)", parseRange, rangeForm,
        "BAR:BYTES");
    add("--memory", options.memory, "The same for their memory, or none (default: 1:4096)", isRangeOrNone,
        rangeForm, "BAR:BYTES");
}

}  // namespace

void addServeCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<ServeOptions>();
    CLI::App* const command = program.add_subcommand(
        "serve",
        "Run a guest computer with a machine's cards on its bus, in QEMU, from power-up to power-off");
    addFolder(*command, options->folder);
    command
        ->add_option("command", options->command,
                     "After --, the command that runs QEMU, such as qemu-system-x86_64 and its arguments")
        ->required()
        ->type_name("COMMAND");
    addFunction(*command, *options);
    command->footer(
        "The cards are added to the command as devices x-pci-proxy-dev. These need the guest's memory to be "
        "shared with this program. So, unless the command names a memory backend, one of the size in its -m "
        "is added: -object memory-backend-memfd,id=shared-with-cards,share=on,size=SIZE -machine "
        "memory-backend=shared-with-cards.\n\n"
        "Exits with the command's exit code, or with 3 if the machine loses its power.");
    command->callback([options, &out] { serve(*options, out); });
}

}  // namespace cardsim
