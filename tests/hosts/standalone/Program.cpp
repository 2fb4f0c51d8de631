// Runs the real program and catches what it prints.
#include "Program.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

[[noreturn]] void
becomeProgram(std::vector<std::string> arguments, const std::string& out, const std::string& err) {
    arguments.insert(arguments.begin(), ORVELSCOPE_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const int outFile = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int errFile = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(outFile, STDOUT_FILENO);
    dup2(errFile, STDERR_FILENO);
    execv(pointers[0], pointers.data());
    _exit(127);
}

} // namespace

std::string testFolder() {
    return std::getenv("HOME"); // private to the run, see TestMain.cpp
}

ProgramResult runProgram(const std::vector<std::string>& arguments, const std::string& outputPath) {
    const std::string out = outputPath.empty() ? testFolder() + "/stdout" : outputPath;
    const std::string err = testFolder() + "/stderr";
    const pid_t child = fork();
    if (child == 0) becomeProgram(arguments, out, err);

    ProgramResult result;
    int status = 0;
    if (waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.status = WEXITSTATUS(status);
    if (outputPath.empty()) result.out = contentOf(out);
    result.err = contentOf(err);
    return result;
}
