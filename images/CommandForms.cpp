#include "images/CommandForms.h"

#include <algorithm>
#include <array>

namespace images {
namespace {

constexpr std::array<CommandForm, 19> kForms = {{
    {XsvfOpcode::XCOMPLETE, "XCOMPLETE", Operands::none},
    {XsvfOpcode::XTDOMASK, "XTDOMASK", Operands::value},
    {XsvfOpcode::XSIR, "XSIR", Operands::instruction},
    {XsvfOpcode::XSDR, "XSDR", Operands::value},
    {XsvfOpcode::XRUNTEST, "XRUNTEST", Operands::number},
    {XsvfOpcode::XREPEAT, "XREPEAT", Operands::byte},
    {XsvfOpcode::XSDRSIZE, "XSDRSIZE", Operands::number},
    {XsvfOpcode::XSDRTDO, "XSDRTDO", Operands::twoValues},
    {XsvfOpcode::XSETSDRMASKS, "XSETSDRMASKS", Operands::twoValues},
    {XsvfOpcode::XSDRINC, "XSDRINC", Operands::steps},
    {XsvfOpcode::XSDRB, "XSDRB", Operands::value},
    {XsvfOpcode::XSDRC, "XSDRC", Operands::value},
    {XsvfOpcode::XSDRE, "XSDRE", Operands::value},
    {XsvfOpcode::XSDRTDOB, "XSDRTDOB", Operands::twoValues},
    {XsvfOpcode::XSDRTDOC, "XSDRTDOC", Operands::twoValues},
    {XsvfOpcode::XSDRTDOE, "XSDRTDOE", Operands::twoValues},
    {XsvfOpcode::XSTATE, "XSTATE", Operands::state},
    {XsvfOpcode::XENDIR, "XENDIR", Operands::endState},
    {XsvfOpcode::XENDDR, "XENDDR", Operands::endState},
}};

}  // namespace

const CommandForm* formOf(uint8_t opcode) {
    const auto* const form = std::ranges::find(kForms, static_cast<XsvfOpcode>(opcode), &CommandForm::opcode);
    return form != kForms.end() ? form : nullptr;
}

const CommandForm* formNamed(std::string_view name) {
    const auto* const form = std::ranges::find(kForms, name, &CommandForm::name);
    return form != kForms.end() ? form : nullptr;
}

}  // namespace images
