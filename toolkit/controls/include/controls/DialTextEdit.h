// The box in which a dial's value is typed.
#pragma once

#include "controls/TextEdit.h"

namespace Sorel {

/// Begins with the text of the parameter's value. What was typed is the dial's business.
class CDialTextEdit : public Sorel_TextEdit {
  public:
    CDialTextEdit(const CRect& size,
                  CControlListener* listener,
                  Vardo::IPluginParameter& parameter);
    void draw(CDrawContext& context) override;
    const char* getClassName() const override { return "CDialTextEdit"; }
};

} // namespace Sorel
