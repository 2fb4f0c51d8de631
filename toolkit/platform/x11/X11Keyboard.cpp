// The keyboard.
#include "x11/X11Keyboard.h"

#include "core/Utf8.h"

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

// The header has a parameter named after a keyword.
#define explicit explicitBits
#include <xcb/xkb.h>
#undef explicit

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace Sorel {

namespace Utf8 = Core::Utf8;

namespace {

struct SymbolRange {
    xkb_keysym_t first;
    xkb_keysym_t last;
    std::uint8_t key;
};

/// Key of the first symbol; those up to the last follow.
constexpr std::array kSymbols{
    SymbolRange{XKB_KEY_BackSpace, XKB_KEY_BackSpace, Key::kBack},
    SymbolRange{XKB_KEY_Tab, XKB_KEY_Tab, Key::kTab},
    SymbolRange{XKB_KEY_ISO_Left_Tab, XKB_KEY_ISO_Left_Tab, Key::kTab},
    SymbolRange{XKB_KEY_KP_Tab, XKB_KEY_KP_Tab, Key::kTab},
    SymbolRange{XKB_KEY_Clear, XKB_KEY_Clear, Key::kClear},
    SymbolRange{XKB_KEY_KP_Begin, XKB_KEY_KP_Begin, Key::kClear},
    SymbolRange{XKB_KEY_Return, XKB_KEY_Return, Key::kReturn},
    SymbolRange{XKB_KEY_KP_Enter, XKB_KEY_KP_Enter, Key::kReturn},
    SymbolRange{XKB_KEY_Pause, XKB_KEY_Pause, Key::kPause},
    SymbolRange{XKB_KEY_Escape, XKB_KEY_Escape, Key::kEscape},
    SymbolRange{XKB_KEY_space, XKB_KEY_space, Key::kSpace},
    SymbolRange{XKB_KEY_KP_Space, XKB_KEY_KP_Space, Key::kSpace},
    SymbolRange{XKB_KEY_End, XKB_KEY_End, Key::kEnd},
    SymbolRange{XKB_KEY_KP_End, XKB_KEY_KP_End, Key::kEnd},
    SymbolRange{XKB_KEY_Home, XKB_KEY_Home, Key::kHome},
    SymbolRange{XKB_KEY_KP_Home, XKB_KEY_KP_Home, Key::kHome},
    SymbolRange{XKB_KEY_Left, XKB_KEY_Down, Key::kLeft},       // left, up, right, down
    SymbolRange{XKB_KEY_KP_Left, XKB_KEY_KP_Down, Key::kLeft}, // likewise
    SymbolRange{XKB_KEY_Page_Up, XKB_KEY_Page_Down, Key::kPageUp},
    SymbolRange{XKB_KEY_KP_Page_Up, XKB_KEY_KP_Page_Down, Key::kPageUp},
    SymbolRange{XKB_KEY_Select, XKB_KEY_Select, Key::kSelect},
    SymbolRange{XKB_KEY_Print, XKB_KEY_Print, Key::kSnapshot},
    SymbolRange{XKB_KEY_Insert, XKB_KEY_Insert, Key::kInsert},
    SymbolRange{XKB_KEY_KP_Insert, XKB_KEY_KP_Insert, Key::kInsert},
    SymbolRange{XKB_KEY_Delete, XKB_KEY_Delete, Key::kDelete},
    SymbolRange{XKB_KEY_KP_Delete, XKB_KEY_KP_Delete, Key::kDelete},
    SymbolRange{XKB_KEY_Help, XKB_KEY_Help, Key::kHelp},
    SymbolRange{XKB_KEY_KP_0, XKB_KEY_KP_9, Key::kNumpad0},
    SymbolRange{XKB_KEY_KP_Multiply, XKB_KEY_KP_Divide, Key::kMultiply}, // * + , - . /
    SymbolRange{XKB_KEY_F1, XKB_KEY_F12, Key::kF1},
    SymbolRange{XKB_KEY_Num_Lock, XKB_KEY_Num_Lock, Key::kNumLock},
    SymbolRange{XKB_KEY_Scroll_Lock, XKB_KEY_Scroll_Lock, Key::kScroll},
    SymbolRange{XKB_KEY_Shift_L, XKB_KEY_Shift_L, Key::kShift},
    SymbolRange{XKB_KEY_Shift_R, XKB_KEY_Shift_R, Key::kShift},
    SymbolRange{XKB_KEY_Control_L, XKB_KEY_Control_L, Key::kControl},
    SymbolRange{XKB_KEY_Control_R, XKB_KEY_Control_R, Key::kControl},
    SymbolRange{XKB_KEY_Alt_L, XKB_KEY_Alt_L, Key::kAlt},
    SymbolRange{XKB_KEY_Alt_R, XKB_KEY_Alt_R, Key::kAlt},
    SymbolRange{XKB_KEY_9, XKB_KEY_9, Key::kEquals}, // as the toolkit has it on every platform
};

std::uint8_t keyOf(xkb_keysym_t symbol) {
    for (const SymbolRange& range : kSymbols)
        if (symbol >= range.first && symbol <= range.last)
            return static_cast<std::uint8_t>(range.key + (symbol - range.first));
    return Key::kNone;
}

const char* inputLocale() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
        if (const char* value = std::getenv(name); value != nullptr && *value != 0) return value;
    return "C";
}

} // namespace

void X11Keyboard::ContextFree::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}
void X11Keyboard::KeymapFree::operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
void X11Keyboard::StateFree::operator()(xkb_state* state) const { xkb_state_unref(state); }
void X11Keyboard::ComposeFree::operator()(xkb_compose_state* state) const {
    xkb_compose_state_unref(state);
}

X11Keyboard::X11Keyboard(const X11Connection& connection)
    : connection_(connection) {
    if (xkb_x11_setup_xkb_extension(
            connection.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_, nullptr) == 0)
        return;
    context_.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context_) return;
    xkb_context_set_log_level(context_.get(), XKB_LOG_LEVEL_CRITICAL);
    device_ = xkb_x11_get_core_keyboard_device_id(connection.xcb());
    if (device_ < 0) return;
    selectEvents();
    loadKeymap();
    loadCompose();
}

X11Keyboard::~X11Keyboard() = default;

void X11Keyboard::selectEvents() {
    constexpr std::uint16_t kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                      XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                      XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t kMapParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
        XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS | XCB_XKB_MAP_PART_KEY_ACTIONS |
        XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events(connection_.xcb(), static_cast<xcb_xkb_device_spec_t>(device_), kEvents,
                          0, kEvents, kMapParts, kMapParts, nullptr);
    // A key that repeats sends presses without releases in between.
    constexpr std::uint32_t kRepeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const xcb_xkb_per_client_flags_cookie_t cookie = xcb_xkb_per_client_flags(
        connection_.xcb(), static_cast<xcb_xkb_device_spec_t>(device_), kRepeat, kRepeat, 0, 0, 0);
    xcb_discard_reply(connection_.xcb(), cookie.sequence);
}

void X11Keyboard::loadKeymap() {
    keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection_.xcb(), device_,
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS));
    state_.reset(keymap_ ? xkb_x11_state_new_from_device(keymap_.get(), connection_.xcb(), device_)
                         : nullptr);
}

void X11Keyboard::loadCompose() {
    xkb_compose_table* table = nullptr;
    for (const char* locale : {inputLocale(), "en_US.UTF-8"})
        if (table == nullptr)
            table = xkb_compose_table_new_from_locale(context_.get(), locale,
                                                      XKB_COMPOSE_COMPILE_NO_FLAGS);
    if (table == nullptr) return;
    compose_.reset(xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS));
    xkb_compose_table_unref(table);
}

bool X11Keyboard::onEvent(const xcb_generic_event_t& event) {
    if (firstEvent_ == 0 || (event.response_type & 0x7F) != firstEvent_) return false;
    // All events of the extension have the number; which one it is stands in the second byte.
    switch (event.pad0) {
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        loadKeymap();
        break;
    case XCB_XKB_STATE_NOTIFY: {
        const auto& now = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (state_)
            xkb_state_update_mask(state_.get(), now.baseMods, now.latchedMods, now.lockedMods,
                                  static_cast<xkb_layout_index_t>(now.baseGroup),
                                  static_cast<xkb_layout_index_t>(now.latchedGroup),
                                  now.lockedGroup);
        break;
    }
    default:
        break;
    }
    return true;
}

bool X11Keyboard::isActive(const char* modifier) const {
    return xkb_state_mod_name_is_active(state_.get(), modifier, XKB_STATE_MODS_EFFECTIVE) > 0;
}

std::uint8_t X11Keyboard::modifiers() const {
    return static_cast<std::uint8_t>((isActive(XKB_MOD_NAME_SHIFT) ? Modifier::kShift : 0) |
                                     (isActive(XKB_MOD_NAME_CTRL) ? Modifier::kControl : 0) |
                                     (isActive(XKB_MOD_NAME_ALT) ? Modifier::kAlt : 0) |
                                     (isActive(XKB_MOD_NAME_LOGO) ? Modifier::kCommand : 0));
}

/// The key's symbol now; with control the Latin one of another layout, so that shortcuts work on a
/// keyboard that writes Cyrillic or Greek.
std::uint32_t X11Keyboard::symbol(std::uint8_t keyCode) const {
    const xkb_keysym_t now = xkb_state_key_get_one_sym(state_.get(), keyCode);
    const bool special = now < 0x80 || now >= 0xFE00;
    if (special || !isActive(XKB_MOD_NAME_CTRL)) return now;
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap_.get(), keyCode);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap_.get(), keyCode, layout, 0, &symbols) == 1 &&
            symbols[0] < 0x80)
            return symbols[0];
    }
    return now;
}

KeyEvent X11Keyboard::release(std::uint8_t keyCode) const {
    if (!state_) return {};
    const xkb_keysym_t now = symbol(keyCode);
    return {static_cast<std::int32_t>(xkb_keysym_to_utf32(now)), keyOf(now), modifiers()};
}

std::vector<KeyEvent> X11Keyboard::press(std::uint8_t keyCode) {
    const KeyEvent plain = release(keyCode);
    if (!state_ || !compose_) return {plain};
    const xkb_keysym_t now = symbol(keyCode);
    if (xkb_compose_state_feed(compose_.get(), now) == XKB_COMPOSE_FEED_IGNORED) return {plain};
    switch (xkb_compose_state_get_status(compose_.get())) {
    case XKB_COMPOSE_COMPOSING:
        return {};
    case XKB_COMPOSE_CANCELLED:
        xkb_compose_state_reset(compose_.get());
        return {};
    case XKB_COMPOSE_COMPOSED:
        break;
    case XKB_COMPOSE_NOTHING:
    default:
        return {plain};
    }
    std::array<char, 64> bytes{};
    xkb_compose_state_get_utf8(compose_.get(), bytes.data(), bytes.size());
    xkb_compose_state_reset(compose_.get());
    std::vector<KeyEvent> keys;
    const std::string_view text = bytes.data();
    for (std::size_t at = 0; at < text.size();) {
        const Utf8::Decoded next = Utf8::decode(text, at);
        keys.push_back({static_cast<std::int32_t>(next.code), Key::kNone, plain.modifiers});
        at += next.length;
    }
    return keys;
}

} // namespace Sorel
