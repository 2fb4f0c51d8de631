// Menus: the items, and the control that opens them and shows the chosen one.
#pragma once

#include "controls/ParamDisplay.h"
#include "platform/Menu.h"

#include <memory>
#include <string>
#include <vector>

namespace Sorel {

class COptionMenu;

/// One entry of a menu.
class CMenuItem : public CBaseObject {
  public:
    enum Flags : std::int32_t { kDisabled = 1, kTitle = 2, kChecked = 4, kSeparator = 8 };

    explicit CMenuItem(const char* title, std::int32_t flags = 0)
        : title_(title != nullptr ? title : "")
        , flags_(flags) {}
    ~CMenuItem() override;

    const std::string& getTitle() const { return title_; }
    void setTitle(const char* title) { title_ = title != nullptr ? title : ""; }
    std::int32_t getFlags() const { return flags_; }
    void setEnabled(bool on) { setFlag(kDisabled, !on); }
    void setIsTitle(bool on) { setFlag(kTitle, on); }
    void setChecked(bool on) { setFlag(kChecked, on); }
    bool isChecked() const { return (flags_ & kChecked) != 0; }
    bool isSeparator() const { return (flags_ & kSeparator) != 0; }
    /// Free for the owner.
    void setTag(std::int32_t tag) { tag_ = tag; }
    std::int32_t getTag() const { return tag_; }
    /// Takes a reference of its own.
    void setSubmenu(COptionMenu* menu);
    COptionMenu* getSubmenu() const { return submenu_; }

  private:
    void setFlag(std::int32_t flag, bool on) { flags_ = on ? flags_ | flag : flags_ & ~flag; }

    std::string title_;
    std::int32_t flags_;
    std::int32_t tag_ = 0;
    COptionMenu* submenu_ = nullptr; // counted
};

/// A field with the current entry; a press opens its menu, the wheel steps through it. A choice
/// sets the current index and tells the listener; a menu that is dismissed does neither.
class COptionMenu : public CParamDisplay {
  public:
    /// Style bit: the menu opens at the height of the pointer.
    static constexpr std::int32_t kPopupAtPointer = 0x200;

    COptionMenu(const CRect& size, CControlListener* listener, std::int32_t tag);
    ~COptionMenu() override;

    CMenuItem* addEntry(const char* title);
    CMenuItem* addSubmenu(const char* title, COptionMenu* menu);
    CMenuItem* addSeparator();
    int getNbEntries() const { return static_cast<int>(items_.size()); }
    /// Null past the end.
    CMenuItem* getEntry(int index) const;
    bool removeEntry(int index);
    void removeAllEntries();
    /// Separators count. Out of range: no entry is current.
    void setCurrent(int index);
    int getCurrent() const { return currentIndex_; }
    /// Ticks the current entry when the menu opens.
    void setChecksCurrent(bool on) { checksCurrent_ = on; }
    /// What the field shows; empty for the title of the current entry.
    void setFieldText(const char* text);

    /// Opens the menu at the control, or at another rectangle of the frame. It never blocks: the
    /// listener hears of the choice in a later idle. False when no menu can be shown.
    bool popup();
    bool popup(const CRect& anchorInFrame);
    bool isOpen() const;
    /// Takes the menu away without a choice.
    void cancel();
    /// The menu (this or a sub-menu) and the index in it of the last choice; null and -1 for none.
    COptionMenu* getLastMenu() const { return lastMenu_; }
    int getLastResult() const { return lastResult_; }

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    using CParamDisplay::onWheel;
    bool onWheel(CPoint where, float distance, std::int32_t* buttons) override;
    void setParameter(Vardo::IPluginParameter* parameter) override;
    void onParameterChanged(int parameterIndex) override;
    int removed(CViewContainer* parent) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "COptionMenu"; }

  private:
    struct Target {
        COptionMenu* menu;
        int index;
    };

    std::vector<MenuItem> describe(std::vector<Target>& targets) const;
    void choose(const std::vector<Target>& targets, int id);
    void currentFromParameter();
    void currentToParameter();
    std::string fieldText() const;

    std::vector<Counted<CMenuItem>> items_;
    int currentIndex_ = -1;
    int lastResult_ = -1;
    COptionMenu* lastMenu_ = nullptr;
    std::unique_ptr<IOSOptionMenu> platformMenu_;
    std::string fieldText_;
    bool checksCurrent_ = true;
};

} // namespace Sorel
