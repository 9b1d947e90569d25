#include "Run/OutputClash.h"

#include <filesystem>

#include "Run/Options.h"
#include "Run/OutputFile.h"

namespace {

// True when both paths lead to one file, which need not exist.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    if (std::filesystem::equivalent(a, b, error)) return true;
    const auto first = std::filesystem::weakly_canonical(a, error);
    const auto second = std::filesystem::weakly_canonical(b, error);
    return !error && first == second;
}

}  // namespace

std::optional<std::string> FindClashingOutput(const Options& options) {
    const bool isCsvFile = options.csv && options.csv != OutputFile::kStandardOutput;
    std::optional<std::string> csv = isCsvFile ? options.csv : std::nullopt;
    const std::optional<std::string> checkpoint =
        options.checkpoint ? std::optional(options.CheckpointPath()) : std::nullopt;
    const auto clashes = [&](const std::optional<std::string>& output,
                             const std::optional<std::string>& alsoWritten) {
        for (const auto& other : {options.document, options.resume, options.save, checkpoint,
                                  options.sweepFile, alsoWritten})
            if (output && other && IsSameFile(*output, *other)) return true;
        return false;
    };
    if (clashes(csv, std::nullopt)) return csv;
    if (clashes(options.png, csv)) return options.png;
    const bool isExportFile = options.exported && options.exported != OutputFile::kStandardOutput;
    if (isExportFile && (clashes(options.exported, csv) || clashes(options.exported, options.png) ||
                         clashes(options.exported, options.events)))
        return options.exported;
    const bool isEventFile = options.events && options.events != OutputFile::kStandardOutput;
    if (isEventFile && (clashes(options.events, csv) || clashes(options.events, options.png)))
        return options.events;
    return std::nullopt;
}
