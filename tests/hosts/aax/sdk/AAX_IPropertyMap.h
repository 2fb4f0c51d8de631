// Test double: properties, which a test reads back.
#pragma once

#include "AAX.h"

#include <map>

class AAX_IPropertyMap {
  public:
    AAX_Result AddProperty(AAX_EProperty property, AAX_CPropertyValue value) {
        properties[property] = value;
        return 0;
    }

    std::map<int, AAX_CPropertyValue> properties;
};
