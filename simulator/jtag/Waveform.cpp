#include "simulator/jtag/Waveform.h"

#include <array>
#include <string_view>

#include "files/UserError.h"
#include "simulator/base/Clock.h"

namespace simulator {
namespace {

constexpr uint64_t kNanosecondsPerMicrosecond = 1000;
constexpr unsigned kTapBits = 4;

// To the nearest; there is never a half.
uint64_t nanoseconds(uint64_t accesses) {
    return (accesses * kNanosecondsPerMicrosecond + 1) / Clock::kAccessesPerMicrosecond;
}

struct Wire {
    char identifier;
    std::string_view name;
    bool JtagLevels::*level;
};

constexpr std::array kWires{
    Wire{'C', "TCK", &JtagLevels::tck},           Wire{'M', "TMS", &JtagLevels::tms},
    Wire{'I', "TDI", &JtagLevels::tdi},           Wire{'O', "TDO", &JtagLevels::tdo},
    Wire{'A', "activity", &JtagLevels::activity},
};

struct Tap {
    char bitsIdentifier;
    char textIdentifier;
    std::string_view device;
    TapState JtagLevels::*state;
};

constexpr std::array kTaps{
    Tap{'p', 'P', "prom", &JtagLevels::promTap},
    Tap{'f', 'F', "fpga", &JtagLevels::fpgaTap},
};

constexpr std::string_view kBeginning = "$comment Time 0 is the machine's access ";
constexpr files::FileKind kRecording{"a recording", kBeginning};

std::string header(uint64_t firstAccess) {
    std::string text = std::string(kBeginning) + std::to_string(firstAccess) +
                       ". Three accesses take a microsecond. $end\n"
                       "$timescale 1 ns $end\n"
                       "$scope module jtag $end\n";
    const auto declare = [&text](std::string_view typeAndBits, char identifier, std::string_view name) {
        text.append("$var ")
            .append(typeAndBits)
            .append({' ', identifier, ' '})
            .append(name)
            .append(" $end\n");
    };
    for (const Wire& wire : kWires) {
        declare("wire 1", wire.identifier, wire.name);
    }
    for (const Tap& tap : kTaps) {
        declare("reg 4", tap.bitsIdentifier, std::string(tap.device) + "_tap [3:0]");
        declare("string 1", tap.textIdentifier, std::string(tap.device) + "_state");
    }
    return text + "$upscope $end\n$enddefinitions $end\n";
}

void putTap(std::string& text, const Tap& tap, const JtagLevels& levels) {
    text += 'b';
    for (unsigned bit = kTapBits; bit-- > 0;) {
        text += !levels.answers                                              ? 'x'
                : (static_cast<unsigned>(levels.*tap.state) >> bit & 1) != 0 ? '1'
                                                                             : '0';
    }
    text.append({' ', tap.bitsIdentifier, '\n', 's'})
        .append(levels.answers ? tapStateName(levels.*tap.state) : "unknown")
        .append({' ', tap.textIdentifier, '\n'});
}

// The values that have changed; all of them if there were none before.
std::string changes(const JtagLevels* before, const JtagLevels& now) {
    const bool all = before == nullptr || before->answers != now.answers;
    std::string text;
    if (!all && !now.answers) {
        return text;
    }
    for (const Wire& wire : kWires) {
        const bool level = now.*wire.level;
        if (all || before->*wire.level != level) {
            text.append({!now.answers ? 'x' : level ? '1' : '0', wire.identifier, '\n'});
        }
    }
    for (const Tap& tap : kTaps) {
        if (all || before->*tap.state != now.*tap.state) {
            putTap(text, tap, now);
        }
    }
    return text;
}

}  // namespace

void requireRecordable(const std::string& file) {
    files::requireReplaceable(file, kRecording);
}

Waveform::Waveform(const RecordingRequest& request, uint64_t accesses, const JtagLevels& levels)
    : file_(request.file, kRecording),
      runBegins_(accesses),
      begins_(accesses + request.fromMicroseconds * Clock::kAccessesPerMicrosecond),
      ends_(begins_ + request.microseconds * Clock::kAccessesPerMicrosecond),
      levels_(levels) {
    file_.append(header(accesses));
    if (!advance(accesses)) {
        throw files::UserError(file_.failure());
    }
}

void Waveform::sample(uint64_t accesses, const JtagLevels& levels) {
    if (!advance(accesses)) {
        return;
    }
    if (stage_ == Stage::within) {
        if (const std::string values = changes(&levels_, levels); !values.empty()) {
            put(accesses, values);
        }
    }
    levels_ = levels;
}

void Waveform::end(uint64_t accesses) {
    if (advance(accesses) && stage_ == Stage::within) {
        put(accesses, {});
    }
    if (!file_.failure().empty()) {
        throw files::UserError(file_.failure());
    }
}

bool Waveform::advance(uint64_t accesses) {
    if (stage_ == Stage::before && accesses >= begins_) {
        stage_ = Stage::within;
        put(begins_, "$dumpvars\n" + changes(nullptr, levels_) + "$end\n");
    }
    if (stage_ == Stage::within && accesses >= ends_) {
        put(ends_, {});
        stage_ = Stage::after;
    }
    return file_.failure().empty();
}

void Waveform::put(uint64_t accesses, const std::string& values) {
    const uint64_t time = nanoseconds(accesses - runBegins_);
    const bool isNew = latest_ != time;
    latest_ = time;
    file_.append(isNew ? '#' + std::to_string(time) + '\n' + values : values);
}

}  // namespace simulator
