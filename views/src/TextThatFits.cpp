#include "TextThatFits.h"

#include "core/Utf8.h"

namespace Sorel {

std::string endThatFits(CDrawContext& context, const std::string& text, double width) {
    if (context.getStringWidth(text) <= width) return text;
    std::size_t at = 0;
    std::string shown;
    do {
        at = Core::Utf8::next(text, at);
        shown = "..." + text.substr(at);
    } while (at < text.size() && context.getStringWidth(shown) > width);
    return shown;
}

} // namespace Sorel
