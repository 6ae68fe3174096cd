#include "tools/command_line/Streams.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

#include "files/FileError.h"
#include "files/OpenFile.h"
#include "files/OutputFile.h"
#include "files/WholeFile.h"
#include "simulator/storage/MachineFiles.h"
#include "tools/command_line/CommandLine.h"

namespace tools {
namespace {

std::vector<uint8_t> readStandardInput() {
    constexpr std::size_t kPieceBytes = 65536;
    std::vector<uint8_t> bytes;
    std::array<char, kPieceBytes> piece{};
    do {
        std::cin.read(piece.data(), kPieceBytes);
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + std::cin.gcount());
        if (bytes.size() > files::kMostFileBytes) {
            throw files::FileError(
                "standard input",
                "is longer than " + std::to_string(files::kMostFileBytes >> 20) + " megabytes");
        }
    } while (std::cin);
    // The stream reports a failure to read the file below it as the end of the input.
    if (std::cin.bad() || std::ferror(stdin) != 0) {
        throw files::FileError("standard input", "could not be read");
    }
    return bytes;
}

}  // namespace

bool isStandardStream(const std::string& name) {
    return name == "-";
}

std::string checkFileName(const std::string& name) {
    return name.empty() ? "The name must not be empty." : "";
}

std::string checkPath(const std::string& name) {
    return isStandardStream(name)
               ? "- stands for standard input or output, which cannot be used here; write ./- for that name."
               : checkFileName(name);
}

void refuseStandardInputTwice(const std::vector<std::string>& names) {
    if (std::ranges::count_if(names, isStandardStream) > 1) {
        refuseUsage("Standard input can be named only once.");
    }
}

std::string inputName(const std::string& name) {
    return isStandardStream(name) ? "standard input" : name;
}

std::vector<uint8_t> readInput(const std::string& name) {
    return isStandardStream(name) ? readStandardInput() : files::readFile(name);
}

void writeOutput(const std::string& name, std::span<const uint8_t> content, std::ostream& out,
                 const std::string& message, const std::string& madeFrom) {
    if (isStandardStream(name)) {
        out.write(reinterpret_cast<const char*>(content.data()),
                  static_cast<std::streamsize>(content.size()));
    } else {
        simulator::requireOutsideMachines(name);
        files::writeOutputFile(name, content, isStandardStream(madeFrom) ? "" : madeFrom);
        out << message;
    }
}

void writeJson(const nlohmann::ordered_json& value, std::ostream& out) {
    constexpr int kIndent = 2;
    out << value.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace tools
