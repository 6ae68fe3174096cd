#include "simulator/jtag/Waveform.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "tests/simulator/Probe.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ValueChangeDump.h"

namespace simulator {

class WaveformTest : public ProbedMachineTest {
  protected:
    std::map<std::string, std::string> valuesNow() {
        const auto bit = [this](uint32_t signal) { return (card().jtagOutput() & signal) != 0 ? "1" : "0"; };
        std::map<std::string, std::string> values{
            {"TCK", bit(0x40)}, {"TMS", bit(0x20)}, {"TDI", bit(0x10)}, {"TDO", "x"}, {"activity", bit(0x08)},
        };
        for (const auto& [name, tap] :
             {std::pair("prom", chain().prom().tap()), std::pair("fpga", chain().fpga().tap())}) {
            values[std::string(name) + "_state"] = tapStateName(tap);
            std::string bits;
            for (unsigned mask = 8; mask != 0; mask >>= 1) {
                bits += (static_cast<unsigned>(tap) & mask) != 0 ? '1' : '0';
            }
            values[std::string(name) + "_tap"] = bits;
        }
        values["TDO"] = probe_->tdo() ? "1" : "0";
        return values;
    }

    const TemporaryDirectory directory_;
    const std::string file_ = directory_.path() / "waveform.vcd";
};

TEST_F(WaveformTest, RecordsEveryChangeAtTheTimeOfItsAccess) {
    constexpr uint64_t kFrom = 10;
    constexpr uint64_t kUntil = 90;
    probe_->wait(1);
    card().requestRecording(RecordingRequest{.file = file_, .fromMicroseconds = kFrom, .microseconds = 80});
    machine_.beginRecordings();
    EXPECT_FALSE(card().recordingRequest()) << "a request is for one run";
    const uint64_t begin = machine_.accesses();

    std::vector<ValueChangeDump::Moment> expected;
    auto values = valuesNow();
    for (uint32_t step = 0; step < 150; ++step) {
        // Clocks through a scan of the identification code and further, and switches the lamp on and off.
        const bool tms = step / 2 == 0 || step / 2 > 40;
        probe_->write(0x100, (step % 2) << 6 | (tms ? 0x20U : 0) | (step % 3 == 0 ? 0x10U : 0) |
                                 (step % 50 == 7 ? 0x08U : 0));
        const uint64_t accesses = machine_.accesses() - begin;
        if (accesses >= 3 * kUntil) {
            break;
        }
        const auto before = std::exchange(values, valuesNow());
        if (accesses < 3 * kFrom) {
            continue;
        }
        if (expected.empty()) {
            expected.push_back({kFrom * 1000, before});
        }
        if (values != before && accesses > 3 * kFrom) {
            expected.push_back({(accesses * 1000 + 1) / 3, values});
        }
        expected.back().values = values;
    }
    ASSERT_GT(expected.size(), 100U);
    expected.push_back({kUntil * 1000, values});

    const ValueChangeDump dump(file_);
    ASSERT_EQ(dump.moments.size(), expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(dump.moments[index].nanoseconds, expected[index].nanoseconds);
        EXPECT_EQ(dump.moments[index].values, expected[index].values) << expected[index].nanoseconds;
    }
}

TEST_F(WaveformTest, ShowsAVanishedCardAndTheEndOfTheRun) {
    card().requestRecording(RecordingRequest{.file = file_});
    machine_.beginRecordings();
    probe_->wait(2);
    card().inject({.kind = FaultKind::cardVanished});
    probe_->wait(2);
    machine_.endRecordings();
    const auto moments = ValueChangeDump(file_).moments;
    ASSERT_EQ(moments.size(), 3U);
    EXPECT_EQ(moments[0].values.at("TDO"), "1");
    EXPECT_EQ(moments[1].nanoseconds, 2000U);
    EXPECT_EQ(moments[1].values.at("TDO"), "x");
    EXPECT_EQ(moments[1].values.at("prom_tap"), "xxxx");
    EXPECT_EQ(moments[2].nanoseconds, 4000U);
}

TEST_F(WaveformTest, NamesAFileItCannotWriteAndKeepsTheRequest) {
    for (const std::string& file : {directory_.path().string(), std::string("/dev/full")}) {
        card().requestRecording(RecordingRequest{.file = file});
        const std::string complaint = complaintOf([this] { machine_.beginRecordings(); });
        EXPECT_TRUE(complaint.starts_with(file + ": is not an ordinary file")) << complaint;
        EXPECT_TRUE(card().recordingRequest());
    }
    machine_.card(1).requestRecording(RecordingRequest{.file = file_});
    card().requestRecording(RecordingRequest{.file = file_});
    EXPECT_NE(complaintOf([this] { machine_.beginRecordings(); }), "") << "one file for two cards";
}

TEST_F(WaveformTest, ReportsAFullDiskAndLeavesAReadableFile) {
    // A file-size limit stands for a full disk. The signal for exceeding it would kill the process.
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit narrow{.rlim_cur = 4096, .rlim_max = limit.rlim_max};
    card().requestRecording(RecordingRequest{.file = file_});
    machine_.beginRecordings();
    ::setrlimit(RLIMIT_FSIZE, &narrow);
    for (int change = 0; change < 1000; ++change) {
        probe_->write(0x100, change % 2 == 0 ? 0x40 : 0);
    }
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, before);
    const std::string complaint = complaintOf([this] { machine_.endRecordings(); });
    EXPECT_TRUE(complaint.starts_with(file_ + ": could not be written")) << complaint;
    EXPECT_GT(ValueChangeDump(file_).moments.size(), 100U);
}

}  // namespace simulator
