#include "frame/PropertyManager.h"

#include "ParameterBlob.h"
#include "frame/ParameterProperty.h"

#include <algorithm>
#include <cstring>

namespace Vardo {

void CPropertyManager::setBlobName(const char* name) {
    blobName_ = name == nullptr ? std::string() : std::string(name, strnlen(name, kMaxBlobName));
}

IPluginParameter* CPropertyManager::getParameter(int index) const {
    if (index < 0 || index >= getNumParameters()) return nullptr;
    return parameters_[static_cast<std::size_t>(index)].get();
}

IPluginParameter* CPropertyManager::getParameterById(int id) const {
    for (const auto& parameter : parameters_)
        if (parameter->getId() == id) return parameter.get();
    return nullptr;
}

IPluginParameter* CPropertyManager::getParameterByKey(const std::string& key) const {
    for (const auto& parameter : parameters_)
        if (key == parameter->getKeyText()) return parameter.get();
    return nullptr;
}

IPluginParameter* CPropertyManager::addParameter(std::unique_ptr<IPluginParameter> parameter) {
    if (parameter == nullptr) return nullptr;
    return parameters_.emplace_back(std::move(parameter)).get();
}

IPluginParameter* CPropertyManager::getOrCreateParameter(const std::string& key) {
    if (IPluginParameter* present = getParameterByKey(key)) return present;
    auto created = std::make_unique<ParameterProperty>();
    created->setKey(key.c_str());
    created->setName(key.c_str());
    return addParameter(std::move(created));
}

// The walks below go by index: a listener may well ask for a parameter that is not there yet.

void CPropertyManager::suspendNotifications() {
    for (int i = 0; i < getNumParameters(); ++i)
        getParameter(i)->setNotificationsOn(false);
}

void CPropertyManager::resumeNotifications() {
    for (int i = 0; i < getNumParameters(); ++i)
        getParameter(i)->setNotificationsOn(true);
    for (int i = 0; i < getNumParameters(); ++i)
        getParameter(i)->notifyAll();
}

void CPropertyManager::resetAll() {
    for (int i = 0; i < getNumParameters(); ++i)
        getParameter(i)->resetToDefault();
}

void CPropertyManager::deliverPending() {
    for (int i = 0; i < getNumParameters(); ++i)
        getParameter(i)->deliverPending();
}

int CPropertyManager::makeBlob(void** data) {
    std::vector<ParameterRecord> records;
    records.reserve(parameters_.size());
    for (const auto& parameter : parameters_)
        records.push_back({parameter->getKeyText(), parameter->getValue(), parameter->getMin(),
                           parameter->getMax()});
    lastBlob_ = writeParameterBlob(blobName_, records, compressed_);
    *data = lastBlob_.empty() ? nullptr : lastBlob_.data();
    return static_cast<int>(lastBlob_.size());
}

bool CPropertyManager::loadBlob(const void* data, int size) {
    if (data == nullptr || size <= 0) return false;
    const std::span bytes(static_cast<const std::byte*>(data), static_cast<std::size_t>(size));
    // All is read and checked before the first value changes. Then changes may do what they like,
    // even end the life of `data`.
    const auto records = readParameterBlob(blobName_, bytes);
    if (!records) return false;
    for (int i = 0; i < getNumParameters(); ++i) {
        const std::string_view key = storedKey(getParameter(i)->getKeyText());
        // Once per parameter, however often a damaged blob repeats its key: the last one counts.
        const auto record = std::find_if(records->rbegin(), records->rend(),
                                         [key](const auto& each) { return each.key == key; });
        if (record != records->rend()) getParameter(i)->setValue(record->value);
    }
    return true;
}

} // namespace Vardo
