#include "card/ShellCommand.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

std::string Quoted(std::string_view text) {
    std::string safe = "\"";
    for (const char character : text) {
        if (std::string_view("\"$`\\").find(character) != std::string_view::npos) {
            safe += '\\';
        }
        safe += character;
    }
    return safe + '"';
}

int RunByShell(const std::string& command) {
    const pid_t child = ::fork();
    if (child == 0) {
        // A new session has no terminal. Both settings end with the child.
        ::setsid();
        ::umask(S_IRWXG | S_IRWXO);
        ::_exit(std::system(command.c_str()) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = -1;
    while (child > 0 && ::waitpid(child, &status, 0) == -1 && errno == EINTR) {
    }
    return status;
}
