// Starting the program, and files for it.
#include "Program.h"

#include <sndfile.h>

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
becomeProgram(Arguments arguments, const std::string& out, const std::string& err) {
    arguments.insert(arguments.begin(), ORVELSCOPE_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    execv(pointers[0], pointers.data());
    _exit(127);
}

} // namespace

std::string inTestFolder(const std::string& name) {
    return std::string(std::getenv("HOME")) + "/" + name; // private to the run, see TestMain.cpp
}

ProgramResult runProgram(const Arguments& arguments, const std::string& outputPath) {
    const std::string out = outputPath.empty() ? inTestFolder("stdout") : outputPath;
    const std::string err = inTestFolder("stderr");
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

std::string recordingOf(int rate, int channels, const std::vector<float>& samples) {
    const std::string path = inTestFolder("recording.wav");
    SF_INFO format{};
    format.samplerate = rate;
    format.channels = channels;
    format.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &format);
    sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(file);
    return path;
}
