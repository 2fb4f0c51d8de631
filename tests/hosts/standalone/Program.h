// Runs the real program and catches what it prints.
#pragma once

#include <string>
#include <vector>

using Arguments = std::vector<std::string>;

struct ProgramResult {
    int status = -1; ///< exit status; -1 when it did not end by itself
    std::string out;
    std::string err;
};

/// Runs `orvelscope` with these arguments. `outputPath`, when given, becomes its standard output.
ProgramResult runProgram(const Arguments& arguments, const std::string& outputPath = {});

/// A path in the folder for this test program's files, which is removed at the end of the run.
std::string inTestFolder(const std::string& name);

/// A 32-bit float WAV of interleaved samples in that folder. Gives its path.
std::string recordingOf(int rate, int channels, const std::vector<float>& samples);
