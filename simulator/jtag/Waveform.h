#pragma once

// A recording of a card's JTAG signals: a value change dump (IEEE 1364), for GTKWave and the like.
//
//   jtag.TCK, .TMS, .TDI, .activity   what was last written to the JTAG output register
//   jtag.TDO                          what the JTAG input register reads
//   jtag.prom_tap, jtag.fpga_tap      the TAP controllers' states, as four bits in the order of TapState
//   jtag.prom_state, jtag.fpga_state  the same as text, an extension of GTKWave that other viewers may ignore
//
// While the card does not answer on the bus, everything is unknown: x, and "unknown".
//
// Time 0 is the start of the run; a comment in the file gives the machine's access count then. Times are in
// nanoseconds. An access takes a third of a microsecond, so times are rounded to the nearest nanosecond:
// whole microseconds are exact, and no two accesses share a time.
//
// Every change is written at once, so a run that is killed leaves a valid file.

#include <cstdint>
#include <optional>
#include <string>

#include "files/GrowingFile.h"
#include "simulator/jtag/TapController.h"

namespace simulator {

// What to record of a card during the next run.
struct RecordingRequest {
    static constexpr uint64_t kMostMicroseconds = 1'000'000'000'000;  // keeps the nanoseconds within 64 bits

    std::string file;                           // an absolute path; an earlier recording is replaced
    uint64_t fromMicroseconds = 0;              // from the start of the run
    uint64_t microseconds = kMostMicroseconds;  // how long

    bool operator==(const RecordingRequest&) const = default;
};

// A card's JTAG signals at one moment.
struct JtagLevels {
    bool answers = false;  // on the bus; if not, the rest means nothing
    bool tck = false;
    bool tms = false;
    bool tdi = false;
    bool tdo = false;
    bool activity = false;
    TapState promTap = TapState::testLogicReset;
    TapState fpgaTap = TapState::testLogicReset;
};

// Throws FileError if the path holds anything but an earlier recording.
void requireRecordable(const std::string& file);

class Waveform {
  public:
    // Begins a run at the machine's access count `accesses`, with the card's signals at that moment. Throws
    // files::UserError if the file cannot be created or its header cannot be written.
    Waveform(const RecordingRequest& request, uint64_t accesses, const JtagLevels& levels);

    // Call when signals may have changed. Access counts never decrease.
    void sample(uint64_t accesses, const JtagLevels& levels);

    // Ends the run. Throws files::UserError if something could not be written; the file has what came before.
    void end(uint64_t accesses);

  private:
    // Writes the start or end of the window if it has been reached. False once the file cannot be written.
    bool advance(uint64_t accesses);
    void put(uint64_t accesses, const std::string& values);

    enum class Stage { before, within, after };  // the window

    files::GrowingFile file_;
    // Access counts; ends_ is the first after the window.
    uint64_t runBegins_;
    uint64_t begins_;
    uint64_t ends_;
    Stage stage_ = Stage::before;
    std::optional<uint64_t> latest_;  // the latest time in the file
    JtagLevels levels_;               // the latest, in the file or not
};

}  // namespace simulator
