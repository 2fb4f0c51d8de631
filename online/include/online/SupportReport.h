// One text file with what a support person needs to know: system, host, product. No network.
#pragma once

#include "online/SystemSources.h"

#include <filesystem>
#include <string>

namespace Dorna {

/// What the report is about.
struct ReportSubject {
    std::string product;
    std::string version;
    int maxBlockSize = 0;    // samples
    double sampleRate = 0.0; // Hz
    std::string interfaceName;
    /// Stands at the end as it is: what only this product knows.
    std::string extraText;
};

/// The extra text of a product that keeps its content in a folder.
std::string contentLocationText(const std::string& folder);

/// The whole report. Lines about the system whose source is missing are left out; single values
/// that are missing read "unknown".
std::string supportReportText(const ReportSubject& subject, const ISystemSources& sources);

/// Writes it to the user's desktop folder as "PRODUCT_support_YYYY-MM-DD HH_MM_SS.txt", as a whole
/// or not at all; of two in one second the later one stays. Gives the file, empty when there is no
/// such folder or it cannot be written to.
/// Threads: any but the audio thread. Reads the package database, which takes some 0.2 s.
std::filesystem::path writeSupportReport(const ReportSubject& subject,
                                         const ISystemSources& sources);

} // namespace Dorna
