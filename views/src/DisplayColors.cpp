#include "views/DisplayColors.h"

namespace Sorel {

const DisplayColors& displayColors() {
    static const DisplayColors colors;
    return colors;
}

} // namespace Sorel
