// The keyboard: from key codes of the server to keys and characters of the toolkit.
#pragma once

#include "platform/Input.h"
#include "x11/X11Connection.h"

#include <memory>
#include <vector>

struct xkb_compose_state;
struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace Sorel {

/// Follows the user's layout and its changes. Dead keys and the compose key are put together.
class X11Keyboard {
  public:
    /// Without the keyboard extension all keys are unknown.
    explicit X11Keyboard(const X11Connection& connection);
    ~X11Keyboard();
    X11Keyboard(const X11Keyboard&) = delete;
    X11Keyboard& operator=(const X11Keyboard&) = delete;

    /// True when the event was one of the keyboard extension.
    bool onEvent(const xcb_generic_event_t& event);

    /// A press gives one key; none while characters are being put together; several when the result
    /// has more than one character.
    std::vector<KeyEvent> press(std::uint8_t keyCode);
    KeyEvent release(std::uint8_t keyCode) const;

  private:
    struct ContextFree {
        void operator()(xkb_context* context) const;
    };
    struct KeymapFree {
        void operator()(xkb_keymap* keymap) const;
    };
    struct StateFree {
        void operator()(xkb_state* state) const;
    };
    struct ComposeFree {
        void operator()(xkb_compose_state* state) const;
    };

    void loadKeymap();
    void loadCompose();
    void selectEvents();
    std::uint32_t symbol(std::uint8_t keyCode) const;
    std::uint8_t modifiers() const;
    bool isActive(const char* modifier) const;

    const X11Connection& connection_;
    std::uint8_t firstEvent_ = 0;
    std::int32_t device_ = -1;
    std::unique_ptr<xkb_context, ContextFree> context_;
    std::unique_ptr<xkb_keymap, KeymapFree> keymap_;
    std::unique_ptr<xkb_state, StateFree> state_;
    std::unique_ptr<xkb_compose_state, ComposeFree> compose_;
};

} // namespace Sorel
