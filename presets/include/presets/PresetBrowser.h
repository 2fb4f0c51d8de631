// The preset browser of the head line: name of the current preset, its menu, two arrows.
#pragma once

#include "controls/Control.h"
#include "controls/OptionMenu.h"
#include "controls/TextEdit.h"
#include "presets/PresetInterface.h"

#include <memory>
#include <string>

namespace Sorel {

class CBitmap;
class CFileSelector;

/// A press on an arrow steps to the preset before or after, one anywhere else opens the menu.
/// Everything that happens to presets goes through the interface; it hears of a name that was
/// typed by its valueChanged.
/// Threads: GUI thread. No call blocks: menu, questions and dialogs answer in a later idle, and a
///          window that closes takes them along.
class CPresetBrowser : public CControl, public CControlListener {
  public:
    struct CInfo : Sorel_ObjectConstructorInfoBase {
        /// The box to type a name in; its place follows from the control's.
        Sorel_TextEdit::CInfo name = nameBox();
        /// 18 by 42 each, rest above pressed; may be null.
        CBitmap* arrowDown = nullptr;
        CBitmap* arrowLeft = nullptr;
        CBitmap* arrowRight = nullptr;
        /// Pixels of the pair of arrows at the right end, and between it and the field.
        double arrowsWidth = 36.0;
        double gap = 4.0;

        static Sorel_TextEdit::CInfo nameBox();
    };

    /// Starts with the name "Default", or what the interface sets later. `presets` outlives it.
    CPresetBrowser(const CInfo& info, IPresetBrowserInterface& presets, std::int32_t tag = 0);
    ~CPresetBrowser() override;

    /// The name shown. A change ends typing without a rename.
    void setText(const char* text);
    const char* getText() const { return name_->getText(); }
    bool isTyping() const { return name_->isAttached(); }
    bool isMenuOpen() const { return menu_ && menu_->isOpen(); }

    /// As the arrows do: 1 forward, -1 back, around at the ends.
    void step(int direction);
    void openMenu();

    // The parts, in the parent's coordinates.
    CRect fieldRect() const;
    CRect previousRect() const;
    CRect nextRect() const;

    // CControlListener: the menu and the box
    void valueChanged(CControl* control) override;

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseExited(CPoint where, std::int32_t* buttons) override;
    void onIdle() override;
    int attached(CViewContainer* parent) override;
    int removed(CViewContainer* parent) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override;
    const char* getClassName() const override { return "CPresetBrowser"; }

  private:
    enum class Part { kNone, kField, kPrevious, kNext };

    Part partAt(CPoint where) const;
    CRect nameRect() const;
    CRect downArrowRect() const;
    void setHovered(Part part);
    int stepsFrom() const;

    // Drawing (PresetBrowserDrawing.cpp)
    void drawNameField(CDrawContext& context);
    void drawArrows(CDrawContext& context);
    void drawName(CDrawContext& context);

    // Commands of the menu (PresetBrowserCommands.cpp)
    void chosen(std::int32_t tag);
    bool select(int index);
    void showPreset(int index);
    void save();
    void saveAs();
    void saveChosenFile(const FileDialogAnswer& answer);
    void saveTo(const std::string& path, const std::string& name);
    void startRename();
    void finishTyping();
    void rename(const std::string& name);
    void complain(const std::string& text);
    PresetContinuation whileInWindow(void (CPresetBrowser::*next)(bool));
    void afterDelete(bool done);
    void afterRestore(bool done);

    CInfo info_;
    Counted<CBitmap> arrowDown_;
    Counted<CBitmap> arrowLeft_;
    Counted<CBitmap> arrowRight_;
    IPresetBrowserInterface& presets_;
    Counted<Sorel_TextEdit> name_; // in the parent while a name is typed
    Counted<COptionMenu> menu_;    // the last one opened
    std::unique_ptr<CFileSelector> fileSelector_;
    std::string nameBeforeTyping_;
    std::string unreadable_; // path of a preset that an arrow reached in vain
    Part pressed_ = Part::kNone;
    Part hovered_ = Part::kNone;
    bool menuShown_ = false;
};

} // namespace Sorel
