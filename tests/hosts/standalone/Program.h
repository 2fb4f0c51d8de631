// Runs the real program and catches what it prints.
#pragma once

#include <string>
#include <vector>

struct ProgramResult {
    int status = -1; ///< exit status; -1 when it did not end by itself
    std::string out;
    std::string err;
};

/// Runs `orvelscope` with these arguments. `outputPath`, when given, becomes its standard output.
ProgramResult runProgram(const std::vector<std::string>& arguments,
                         const std::string& outputPath = {});

/// A folder for this test program's files; removed at the end of the run.
std::string testFolder();
