// The two functions through which every host adapter enters this module.
#pragma once

#include "frame/PluginDescription.h"

namespace Vardo {
class IPluginBase;
class VardoCallback;
} // namespace Vardo

/// Appends one record per plug-in in this module. Needs no plug-in and no host.
void getPluginDescriptions(Vardo::PluginDescriptionList& list);

/// Makes the plug-in with the given id; the caller owns it and deletes it through its virtual
/// destructor. `callback` is not owned and outlives the plug-in; null means no host to ask.
/// Fails: lets std::bad_alloc through; null for an id this module does not have.
Vardo::IPluginBase* createPlugin(Vardo::VardoCallback* callback, int id);
