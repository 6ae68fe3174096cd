#include "tools/xsvf/ImageSummary.h"

#include <cmath>

#include "images/ByteText.h"

namespace tools {

std::string faultText(const images::ImageFault& fault) {
    return "offset 0x" + images::offsetText(fault.offset) + ": " + fault.reason;
}

std::string playText(const images::ImageReport& report) {
    return std::to_string(report.commands) + (report.commands == 1 ? " command, " : " commands, ") +
           std::to_string(report.accesses.count()) + " register accesses, about " +
           std::to_string(std::lround(report.accesses.seconds())) + " s on a card";
}

}  // namespace tools
