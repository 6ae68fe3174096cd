#pragma once

// A recording of a card's JTAG signals: a value change dump as IEEE 1364 has it, for GTKWave and the like.
//
//   jtag.TCK, .TMS, .TDI, .activity   what was last written to the JTAG output register
//   jtag.TDO                          what the JTAG input register reads
//   jtag.prom_tap, jtag.fpga_tap      the TAP controllers' states, as four bits: the order of TapState
//   jtag.prom_state, jtag.fpga_state  the same as text, which is GTKWave's extension; others may skip it
//
// While the card does not answer on the bus, everything is unknown: x, and "unknown".
//
// Time 0 is the beginning of the run, and the file's comment gives the access that it is. Times are in
// nanoseconds. An access takes a third of a microsecond, so times are rounded to the nearest nanosecond:
// whole microseconds are exact, and no two accesses fall together.
//
// Every change is in the file as soon as it has happened, so a run that is killed leaves a whole file.

#include <cstdint>
#include <optional>
#include <string>

#include "files/GrowingFile.h"
#include "simulator/jtag/TapController.h"

namespace simulator {

// What somebody wants recorded of a card during the next run.
struct RecordingRequest {
    static constexpr uint64_t kMostMicroseconds = 1'000'000'000'000;  // keeps the nanoseconds within 64 bits

    std::string file;                           // an absolute path; an earlier recording is replaced
    uint64_t fromMicroseconds = 0;              // since the beginning of the run
    uint64_t microseconds = kMostMicroseconds;  // how long

    bool operator==(const RecordingRequest&) const = default;
};

// A card's JTAG signals at one moment.
struct JtagLevels {
    bool answers = false;  // whether the card does; if not, the rest means nothing
    bool tck = false;
    bool tms = false;
    bool tdi = false;
    bool tdo = false;
    bool activity = false;
    TapState promTap = TapState::testLogicReset;
    TapState fpgaTap = TapState::testLogicReset;
};

// Throws FileError unless a recording may go there: nothing is there yet, or an earlier recording.
void requireRecordable(const std::string& file);

class Waveform {
  public:
    // Begins a run at the machine's access count `accesses`, with the card's signals as they are then. Throws
    // FileError when the file cannot be created, or MachineError when it does not take its beginning.
    Waveform(const RecordingRequest& request, uint64_t accesses, const JtagLevels& levels);

    // The signals may have changed at an access, which is no earlier than the one before.
    void sample(uint64_t accesses, const JtagLevels& levels);

    // The run ends. Throws MachineError when the file has not taken everything; it holds what came before.
    void end(uint64_t accesses);

  private:
    // Puts in what time alone has brought, the beginning or the end of the window. False when the file no
    // longer takes anything.
    bool advance(uint64_t accesses);
    void put(uint64_t accesses, const std::string& values);

    enum class Stage { before, within, after };  // the window

    files::GrowingFile file_;
    // Access counts. The end is the first that is no longer in the window.
    uint64_t runBegins_;
    uint64_t begins_;
    uint64_t ends_;
    Stage stage_ = Stage::before;
    std::optional<uint64_t> latest_;  // the latest time in the file
    JtagLevels levels_;               // the latest, in the file or not
};

}  // namespace simulator
