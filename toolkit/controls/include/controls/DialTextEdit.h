// The box in which a dial's value is typed.
#pragma once

#include "controls/TextEdit.h"

#include <string>

namespace Sorel {

/// Begins with the text of the parameter's value. What was typed is the dial's business.
class CDialTextEdit : public Sorel_TextEdit {
  public:
    CDialTextEdit(const CRect& size,
                  CControlListener* listener,
                  Vardo::IPluginParameter& parameter);
    /// Another text stands there than at first. Read back, a rounded value would not be the same.
    bool wasChanged() const { return offered_ != getText(); }
    void draw(CDrawContext& context) override;
    const char* getClassName() const override { return "CDialTextEdit"; }

  private:
    std::string offered_;
};

} // namespace Sorel
