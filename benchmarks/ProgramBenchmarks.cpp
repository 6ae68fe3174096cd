#include "benchmarks/ProgramBenchmarks.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "simulator/machine/DefaultMachine.h"
#include "simulator/storage/MachineDirectory.h"
#include "tests/support/TemporaryDirectory.h"

namespace benchmarks {
namespace {

constexpr int kRepetitions = 25;
constexpr int kUpdateRepetitions = 5;

// What the observer (window/ObserverPlugin.h) in a process reports. Moments are those of the monotonic clock.
struct Observation {
    double shownNanoseconds = 0;   // when the first window had been drawn
    double workedNanoseconds = 0;  // processor time until then
    double updateNanoseconds = 0;  // processor time of the update; 0 without one
    double peakKilobytes = 0;
};

double nanosecondsNow() {
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Runs a program with the observer in it, which ends the program once it has seen what it waits for.
Observation observe(const char* observer, const std::string& program, const char* argument) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);  // scripts/benchmark gives a virtual display
    ::setenv("QT_PLUGIN_PATH", OBSERVER_FOLDER, 1);
    ::setenv("QT_QPA_GENERIC_PLUGINS", observer, 1);
    const TemporaryDirectory folder;
    const std::string report = folder.path() / "report";

    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, report.c_str(), O_WRONLY | O_CREAT, 0600);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    char* const arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(argument), nullptr};
    pid_t child = 0;
    const int error = ::posix_spawn(&child, program.c_str(), &files, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&files);
    if (error == 0) {
        ::waitpid(child, nullptr, 0);
    }

    Observation observation;
    std::ifstream(report) >> observation.shownNanoseconds >> observation.workedNanoseconds >>
        observation.updateNanoseconds >> observation.peakKilobytes;
    if (observation.peakKilobytes == 0) {
        throw std::runtime_error(program + " ended before it could be measured");
    }
    return observation;
}

void makeMachine(const std::filesystem::path& folder) {
    const auto directory = simulator::MachineDirectory::create(folder);
    simulator::addDefaultCards(directory->machine());
    directory->save();
}

// A program, and whether it gets a machine, which is created for the run.
struct Program {
    const char* path;
    bool takesMachine;
};

// Measures the time of an update, or until the first window.
void run(benchmark::State& state, const char* observer, const Program& program) {
    Observation seen;
    for (auto _ : state) {
        const TemporaryDirectory folder;
        const std::string machine = folder.path() / "machine";
        if (program.takesMachine) {
            makeMachine(machine);
        }
        const double start = nanosecondsNow();
        seen = observe(observer, program.path, program.takesMachine ? machine.c_str() : nullptr);
        state.SetIterationTime(
            (seen.updateNanoseconds != 0 ? seen.updateNanoseconds : seen.shownNanoseconds - start) / 1e9);
    }
    state.counters[kWorkedSeconds] = seen.workedNanoseconds / 1e9;
    state.counters[kPeakBytes] = seen.peakKilobytes * 1024;
}

void add(const char* name, const char* observer, const Program& program, int repetitions) {
    benchmark::RegisterBenchmark(name, run, observer, program)
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

void registerProgramBenchmarks() {
    constexpr Program plainWindow{.path = PLAIN_WINDOW_PROGRAM, .takesMachine = false};
    constexpr Program updater{.path = UPDATER_PROGRAM, .takesMachine = true};
    add(kPlainWindow, "firstwindow", plainWindow, kRepetitions);
    add(kUpdater, "firstwindow", updater, kRepetitions);
    add(kUpdateInWindow, "wholeupdate", updater, kUpdateRepetitions);
}

}  // namespace benchmarks
