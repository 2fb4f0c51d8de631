// Owns a plug-in's parameters and turns their values into a block of bytes and back.
#pragma once

#include "frame/PluginParameter.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Vardo {

/// The parameters, in the order of adding. They live as long as the manager.
/// A blob carries values by key, so it loads into any version of the plug-in as far as keys agree.
/// Threads: main thread; the parameters themselves say who may touch them.
class CPropertyManager {
  public:
    static constexpr std::size_t kMaxBlobName = 20;
    /// No blob of ours comes near this; a larger one is refused.
    static constexpr std::size_t kMaxBodyBytes = std::size_t{16} << 20;

    CPropertyManager() = default;
    virtual ~CPropertyManager() = default;
    CPropertyManager(const CPropertyManager&) = delete;
    CPropertyManager& operator=(const CPropertyManager&) = delete;

    /// The name in front of each blob, by which loadBlob finds its beginning; at first empty. Cut
    /// to kMaxBlobName characters.
    void setBlobName(const char* name);
    /// Whether makeBlob packs the body; true at first. Loading takes both.
    void setCompressed(bool compressed) { compressed_ = compressed; }

    int getNumParameters() const { return static_cast<int>(parameters_.size()); }
    /// Null when the index is out of range.
    IPluginParameter* getParameter(int index) const;
    /// Null when no parameter has that id, or that key.
    IPluginParameter* getParameterById(int id) const;
    IPluginParameter* getParameterByKey(const std::string& key) const;

    /// Takes ownership and gives the parameter back; a null pointer adds nothing.
    IPluginParameter* addParameter(std::unique_ptr<IPluginParameter> parameter);
    /// The parameter with that key; a new ParameterProperty of that key and name if there is none.
    IPluginParameter* getOrCreateParameter(const std::string& key);

    /// Between the two no listener hears of any parameter; the second tells all listeners of every
    /// parameter once.
    void suspendNotifications();
    void resumeNotifications();
    void resetAll();
    /// Tells the listeners of changes that host threads made since the last call.
    void deliverPending();

    /// Writes all values; gives the size in bytes, 0 on failure. The memory belongs to the manager
    /// and stays valid until the next makeBlob.
    int makeBlob(void** data);

    /// Sets every parameter whose key the blob has; the others keep their value. Bytes in front of
    /// the blob, such as a host may leave there, are skipped. Limits come from the parameters and
    /// never from the blob; values that are not finite are skipped.
    /// False, with nothing changed, when the data holds no blob of this name or a damaged one.
    bool loadBlob(const void* data, int size);

  private:
    std::string blobName_;
    std::vector<std::unique_ptr<IPluginParameter>> parameters_;
    std::vector<std::byte> lastBlob_;
    bool compressed_ = true;
};

} // namespace Vardo
