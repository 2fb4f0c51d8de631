// The command `render`.
#include "RenderCommand.h"

#include "PictureFiles.h"
#include "Player.h"
#include "SourceExcerpt.h"
#include "StandardError.h"
#include "frame/EditorHost.h"
#include "frame/PluginBase.h"
#include "frame/PluginEditor.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Standalone {
namespace {

// Of the window's clock: as often as hosts let editors idle.
constexpr int kStepMs = 25;

constexpr double kShareOfRecording = 0.6;
constexpr double kSecondsOfUnknown = 10;

/// The window in memory, closed at the end.
class OpenPicture {
  public:
    explicit OpenPicture(Vardo::IPluginBase& plugin)
        : editor_(plugin.getEditor()) {
        Vardo::IEditorPicture* picture = editor_ != nullptr ? editor_->picture() : nullptr;
        if (picture == nullptr) throw std::runtime_error("the analyser has no window to draw");
        picture->openPicture();
        picture_ = picture;
    }
    ~OpenPicture() { editor_->close(); }
    OpenPicture(const OpenPicture&) = delete;
    OpenPicture& operator=(const OpenPicture&) = delete;

    Vardo::IEditorPicture& operator*() { return *picture_; }
    Vardo::IEditorPicture* operator->() { return picture_; }

  private:
    Vardo::IPluginEditor* editor_;
    Vardo::IEditorPicture* picture_ = nullptr;
};

/// Lets the window's clock keep step with the audio.
class PictureClock {
  public:
    PictureClock(Vardo::IPluginBase& plugin, OpenPicture& picture, double sampleRate)
        : plugin_(plugin)
        , picture_(picture)
        , framesPerStep_(sampleRate * kStepMs / 1000) {}

    void followTo(std::int64_t frames) {
        while (static_cast<double>(steps_ + 1) * framesPerStep_ <= static_cast<double>(frames))
            step();
    }
    void step() {
        ++steps_;
        plugin_.onIdle();
        picture_->passTime(kStepMs);
    }

  private:
    Vardo::IPluginBase& plugin_;
    OpenPicture& picture_;
    double framesPerStep_;
    std::int64_t steps_ = 0;
};

void renderPage(const PluginFactory& createPlugin,
                AudioSource& source,
                const PictureFile& file,
                const RenderOptions& options,
                const std::function<void(std::int64_t)>& progress) {
    StandaloneHost host(options.tempo); // outlives the plug-in
    const std::unique_ptr<Vardo::IPluginBase> plugin = makePlugin(createPlugin, host);
    const double rate = source.info().sampleRate;
    SourceExcerpt excerpt(source, pictureFrame(source.info(), options));

    Player player(*plugin, excerpt, options.blockSize, options.tempo);
    readoutOf(*plugin).setThreadedProcessing(false); // the same picture every time
    activatePage(*plugin, file.first);
    applySettings(*plugin, options.settings);

    OpenPicture picture(*plugin);
    PictureClock clock(*plugin, picture, rate);
    if (options.mouse) picture->pointAt(options.mouse->x, options.mouse->y);
    const std::int64_t frames =
        player.play(progress, [&](std::int64_t played) { clock.followTo(played); });
    clock.step(); // shows the last block
    writePicture(*picture, file.second);

    if (frames < excerpt.info().frames && (options.seconds || source.info().frames > 0))
        tell("note: the recording ends after " +
             std::to_string(static_cast<double>(frames) / rate) + " s, so does the picture");
}

} // namespace

std::int64_t pictureFrame(const SourceInfo& source, const RenderOptions& options) {
    if (options.seconds) return std::llround(*options.seconds * source.sampleRate);
    if (source.frames <= 0) return std::llround(kSecondsOfUnknown * source.sampleRate);
    return std::llround(static_cast<double>(source.frames) * kShareOfRecording);
}

std::vector<std::string> render(const PluginFactory& createPlugin,
                                const SourceFactory& openSource,
                                const RenderOptions& options,
                                const std::function<void(double)>& progress) {
    checkSettings(createPlugin, options);
    std::unique_ptr<AudioSource> source = openSource();
    const std::vector<PictureFile> files = preparePictureFiles(options);
    std::vector<std::string> paths;
    for (const PictureFile& file : files) {
        if (!source) source = openSource();
        const auto total =
            static_cast<double>(std::max<std::int64_t>(1, pictureFrame(source->info(), options)));
        renderPage(createPlugin, *source, file, options, [&](std::int64_t frames) {
            const auto share = static_cast<double>(frames) / total;
            if (progress)
                progress((static_cast<double>(paths.size()) + share) /
                         static_cast<double>(files.size()));
        });
        paths.push_back(file.second.string());
        source.reset();
    }
    return paths;
}

} // namespace Standalone
