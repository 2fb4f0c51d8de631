// Test double: a parameter as the host sees it. As in the SDK a new value is a request to the host,
// and stands only when the host has answered.
#pragma once

#include "AAX_CString.h"

#include <functional>

class AAX_IParameter {
  public:
    virtual ~AAX_IParameter() = default;
    AAX_IParameter(AAX_CParamID identifier, const AAX_CString& name, double value)
        : id(std::string(identifier).substr(0, 31))
        , title(name.Get())
        , defaultValue(value)
        , normalized(value) {}

    void SetNormalizedValue(double value) {
        if (request)
            request(value);
        else
            normalized = value;
    }

    std::string id;
    std::string title;
    std::string texts; ///< of the display
    double defaultValue;
    double normalized;
    bool automatable = false;
    int touches = 0;
    int releases = 0;
    std::function<void(double)> request;
};

template <typename T>
class AAX_CParameter final : public AAX_IParameter {
  public:
    template <typename Taper, typename Display>
    AAX_CParameter(AAX_CParamID identifier,
                   const AAX_CString& name,
                   T value,
                   const Taper& taper,
                   const Display& display,
                   bool isAutomatable)
        : AAX_IParameter(identifier, name, taper.toNormalized(static_cast<double>(value))) {
        automatable = isAutomatable;
        texts = display.texts();
    }
};
