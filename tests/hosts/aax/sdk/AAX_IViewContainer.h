// Test double: the host's window.
#pragma once

#include "AAX.h"

#include <vector>

class IACFUnknown {};

class AAX_IViewContainer : public IACFUnknown {
  public:
    AAX_Result SetViewSize(AAX_Point& size) {
        sizes.push_back(size);
        return 0;
    }

    void* window = nullptr;
    std::vector<AAX_Point> sizes;
};
