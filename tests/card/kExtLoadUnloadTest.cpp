// Installing and removing the private driver, with a real archive and the real /tmp, but nothing privileged.

#include "card/kExtLoadUnload.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>

#include "card/ShellCommand.h"
#include "tests/support/FakeHost.h"
#include "tests/support/SystemTmp.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

constexpr uid_t victim = 2000;
constexpr uid_t stranger = 1000;
constexpr unsigned longestSeconds = 20;  // for an installation, which otherwise counts as hanging
const std::string notCopied = "Could not copy to tmp\n";
const std::string notUnpacked = "Could not unpax\n";

// Runs a shell command in place of /bin/rm, and an empty one in place of other tools.
class RemovingHost : public FakeHost {
  public:
    std::string removal = ":";

    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        if (::fork() == 0) {
            ::execl("/bin/sh", "sh", "-c", tool == "/bin/rm" ? removal.c_str() : ":", nullptr);
        }
        return FakeHost::runPrivilegedTool(tool, arguments);
    }
};

// Leaves a child that has ended and was not waited for, such as a program can inherit.
void leaveEndedChild() {
    if (::fork() == 0) {
        ::_exit(EXIT_SUCCESS);
    }
    siginfo_t ended;
    ASSERT_EQ(::waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
}

class ExtractedDriverTest : public testing::Test {
  protected:
    ExtractedDriverTest() {
        fs::permissions(mine_, fs::perms(0755));
        fs::create_directories(mine_ / "VUpdater.kext/Contents");
        std::ofstream(mine_ / "VUpdater.kext/Contents/Info.plist") << "driver";
        pack(mine_ / "Some.app");
    }

    void inMine(const std::string& command) {
        ASSERT_EQ(std::system(("cd " + mine_.string() + " && " + command).c_str()), 0);
    }

    // Makes a bundle whose driver is the folder's VUpdater.kext.
    void pack(const fs::path& bundle) {
        host_.bundle = bundle;
        archive_ = bundle / "Contents/Resources/vupdaterkext.pax";
        fs::create_directories(archive_.parent_path());
        inMine("pax -w -f packed VUpdater.kext");
        fs::copy_file(mine_ / "packed", archive_, fs::copy_options::overwrite_existing);
    }

    // Installs the driver in a new process with a user's ID and a terminal without a reader. Returns what the
    // process wrote to standard error.
    std::string installed(uid_t user) {
        int terminal = -1;
        testing::internal::CaptureStderr();
        const int output = ::dup(STDERR_FILENO);
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::dup2(output, STDERR_FILENO);
            ::alarm(longestSeconds);
            ::umask(0);
            if (::fork() == 0) {
                ::pause();  // a child that runs until the terminal closes
            }
            leaveEndedChild();
            AuthorizationRef ref = nullptr;
            ::_exit(::setreuid(user, user) == 0 ? ExtractAndLoadKext(&ref) : EXIT_FAILURE + 1);
        }
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        ::close(terminal);
        ::close(output);
        std::string said = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(WIFEXITED(status)) << "the installation hangs";
        EXPECT_EQ(WEXITSTATUS(status), said.ends_with(notCopied) || said.ends_with(notUnpacked) ? 0 : 1);
        EXPECT_EQ(fs::exists(unpacked_ / "Contents/Info.plist"), WEXITSTATUS(status) == 1);
        if (WEXITSTATUS(status) == 1) {
            EXPECT_EQ(fs::status(unpacked_).permissions() & fs::perms(0077), fs::perms::none);
        }
        return said;
    }

    SystemTmp tmp_;
    TemporaryDirectory directory_;
    const fs::path& mine_ = directory_.path();
    const fs::path unpacked_ = SystemTmp::driver;
    RemovingHost host_;
    fs::path archive_;
};

TEST_F(ExtractedDriverTest, WaitsUntilTheOldDriverIsGone) {
    const std::string old = "mkdir -p $driver; cd $driver; touch $(seq 2000)";
    const std::string prefix = "driver=" + std::string(SystemTmp::driver) + "; ";
    for (const char* const removal : {"sleep 1; rm -rf $driver", "rm -rf $driver &"}) {
        SCOPED_TRACE(removal);
        inMine(prefix + old);
        host_.removal = prefix + removal;
        EXPECT_EQ(installed(::geteuid()), "");
    }
}

TEST_F(ExtractedDriverTest, CleansUpAfterAFailingTool) {
    const char* const found = std::getenv("PATH");
    ASSERT_NE(found, nullptr);
    const std::string path = found;
    ::setenv("PATH", (mine_.string() + ":" + path).c_str(), 1);
    inMine("echo 'echo part >\"$3\"; exit 1' >cp; chmod +x cp");
    EXPECT_EQ(installed(::geteuid()), notCopied);
    EXPECT_TRUE(SystemTmp::isClean());
    inMine("rm cp; echo 'test $(stat -c %a VUpdater.kext) = 700 && exec '$(command -v pax)' \"$@\"' >pax");
    inMine("chmod +x pax");
    EXPECT_EQ(installed(::geteuid()), "") << "others could enter the folder while it was empty";
    ::setenv("PATH", path.c_str(), 1);
}

TEST(ShellCommandTest, IsNotMistakenForAnotherChild) {
    leaveEndedChild();
    EXPECT_NE(RunByShell("exit 3"), 0);
    while (::wait(nullptr) > 0) {
    }
}

TEST_F(ExtractedDriverTest, BundlePathIsNeverRunAsACommand) {
    pack(mine_ / R"(a"b$(touch pwned)`touch pwned`\"'; touch pwned;')" / "Some.app");
    const fs::path before = fs::current_path();
    fs::current_path(mine_);
    EXPECT_EQ(installed(::geteuid()), "");
    fs::current_path(before);
    EXPECT_FALSE(fs::exists(mine_ / "pwned"));
}

TEST_F(ExtractedDriverTest, RefusesAnArchiveWithoutADriverAndAsksNothing) {
    fs::resize_file(archive_, 1500);
    EXPECT_TRUE(installed(::geteuid()).ends_with(notUnpacked));
    EXPECT_TRUE(SystemTmp::isClean());
    fs::rename(mine_ / "VUpdater.kext", mine_ / "elsewhere");
    fs::create_directory_symlink(mine_ / "elsewhere", mine_ / "VUpdater.kext");
    pack(mine_ / "Some.app");
    EXPECT_EQ(installed(::geteuid()), notUnpacked);
    EXPECT_TRUE(SystemTmp::isClean());
}

// What may exist under one of the two names when the driver is installed, and the command that creates it. It
// could change the user's diary or folder, keep the updater waiting, or let others write to the loaded
// driver.
const std::pair<std::string, std::string> things[] = {
    {"FIFO", "mkfifo -m 666 $name"},
    {"file", "echo planted >$name; chmod 666 $name"},
    {"hard link", "ln diary $name"},
    {"link to a file", "ln -s $PWD/diary $name"},
    {"link to a folder", "ln -s $PWD/folder $name"},
    {"folder", "mkdir -m 777 $name; ln -s $PWD/folder $name/Contents"}};

// The parameter says whether a stranger, not the user, planted the file.
class PlantedFilesTest : public ExtractedDriverTest, public testing::WithParamInterface<bool> {
  protected:
    void expectHarmless(const fs::path& name, bool isStrange, uid_t user) {
        const bool isCopy = name == SystemTmp::archive;
        const bool isFolder = fs::symlink_status(name).type() == fs::file_type::directory;
        const bool stays = isStrange || (isCopy && isFolder);
        EXPECT_EQ(installed(user), !stays ? "" : isCopy ? notCopied : notUnpacked);
        EXPECT_EQ(fs::exists(fs::symlink_status(SystemTmp::archive)), stays && isCopy);
        EXPECT_EQ(fs::is_symlink(name / "Contents"), stays && isFolder) << "a remaining folder is unchanged";
        EXPECT_EQ(fs::file_size(mine_ / "diary"), 4U);
        EXPECT_TRUE(fs::is_empty(mine_ / "folder"));
    }
};

TEST_P(PlantedFilesTest, AreNeverFollowedAwaitedOrLoaded) {
    const bool byStranger = GetParam();
    if (byStranger && ::geteuid() != 0) {
        GTEST_SKIP() << "only root can be two users";
    }
    const uid_t user = byStranger ? victim : ::geteuid();
    std::ofstream(mine_ / "diary") << "mine";
    fs::create_directory(mine_ / "folder");
    for (const char* const own : {"diary", "folder"}) {
        ASSERT_EQ(::chown((mine_ / own).c_str(), user, gid_t(-1)), 0);
    }
    for (const auto& [what, command] : things) {
        for (const char* const name : {SystemTmp::archive, SystemTmp::driver}) {
            SCOPED_TRACE(what + " as " + name);
            inMine("name=" + std::string(name) + "; " + command);
            // A hard link has the owner of its file.
            const bool isStrange = byStranger && what != "hard link";
            ASSERT_EQ(::lchown(name, isStrange ? stranger : user, gid_t(-1)), 0);
            expectHarmless(name, isStrange, user);
            fs::remove_all(SystemTmp::archive);
            fs::remove_all(SystemTmp::driver);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, PlantedFilesTest, testing::Bool(),
                         [](const auto& by) { return by.param ? "ByAStranger" : "ByTheUser"; });

}  // namespace
