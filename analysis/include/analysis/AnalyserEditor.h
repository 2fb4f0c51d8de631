// The one thing the engine knows of its editor.
#pragma once

#include "frame/PluginEditor.h"

#include <functional>
#include <memory>

namespace Orvel {

class COrvelScope;

/// The editor of an analyser. What was measured it copies from the plug-in's DisplayRecord in its
/// idle step; here stands only what the engine tells it.
/// Threads: GUI thread.
class IAnalyserEditor : public Vardo::IPluginEditor {
  public:
    /// The whole state was replaced, by a host's chunk or a preset: show the page, the preset's
    /// name and all values anew.
    virtual void stateReplaced(int page) = 0;
};

/// Makes the editor of a plug-in; given to its constructor by whoever composes the two. The plug-in
/// owns the editor from then on. May give null.
using EditorFactory = std::function<std::unique_ptr<IAnalyserEditor>(COrvelScope&)>;

} // namespace Orvel
