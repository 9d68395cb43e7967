#include "tests/cli/RunCli.h"

#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void RedirectTo(const std::string& path, int descriptor) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, descriptor);
    close(file);
}

} // namespace

CliResult RunCli(const std::vector<std::string>& arguments, const std::string& workingFolder) {
    const TemporaryFolder folder;
    std::vector<char*> argv{const_cast<char*>("klipra-cli")};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        RedirectTo(folder.Path("out"), STDOUT_FILENO);
        RedirectTo(folder.Path("err"), STDERR_FILENO);
        if (workingFolder.empty() || chdir(workingFolder.c_str()) == 0) {
            execv(KLIPRA_CLI, argv.data());
        }
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TemporaryFolder::Read(folder.Path("out")),
            TemporaryFolder::Read(folder.Path("err"))};
}
