// The command `render`: plays a source through the analyser and writes pictures of its window.
#pragma once

#include "AudioSource.h"
#include "CommandLine.h"
#include "PluginSetup.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Standalone {

/// A new source, at its start, for each picture. Fails: throws UserError.
using SourceFactory = std::function<std::unique_ptr<AudioSource>()>;

/// Frames to play before the picture is taken: as the user said, else 60 % of the source, and 10 s
/// of one that cannot say how long it is.
std::int64_t pictureFrame(const SourceInfo& source, const RenderOptions& options);

/// Writes one picture, or one of each page into a folder, and gives their paths in that order. A
/// picture is complete or not there: it is written under another name and then renamed.
/// `progress` hears the share that is done, 0 to 1.
/// Fails: throws UserError for settings, sources and paths that cannot be used, std::runtime_error
/// for a plug-in that does not do its part.
std::vector<std::string> render(const PluginFactory& createPlugin,
                                const SourceFactory& openSource,
                                const RenderOptions& options,
                                const std::function<void(double share)>& progress);

} // namespace Standalone
