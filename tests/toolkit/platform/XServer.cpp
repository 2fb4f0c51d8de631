// A display of the test's own, and the user in front of it.
#include "XServer.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/res.h>
#include <xcb/xtest.h>

#include <array>
#include <cstdlib>

extern char** environ;

namespace {

template <class T>
struct Freed {
    ~Freed() { std::free(value); }
    T* operator->() const { return value; }
    explicit operator bool() const { return value != nullptr; }
    T* value;
};

} // namespace

XServer::XServer() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 9);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::array<const char*, 8> arguments{"Xvfb", "-displayfd",  "9",         "-screen",
                                         "0",    "1280x800x24", "-nolisten", nullptr};
    arguments[6] = "-noreset";
    pid_t child = 0;
    const int error = posix_spawnp(&child, "Xvfb", &actions, nullptr,
                                   const_cast<char* const*>(arguments.data()), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::string number;
    char digit = 0;
    while (error == 0 && read(ends[0], &digit, 1) == 1 && digit != '\n')
        number += digit;
    close(ends[0]);
    if (number.empty()) return;
    process_ = child;
    setenv("DISPLAY", (":" + number).c_str(), 1);
}

XServer::~XServer() { kill(); }

void XServer::kill() {
    if (process_ <= 0) return;
    // It tidies up when it is asked to end, but a request that meets the leaving of its last client
    // is lost on it now and then.
    constexpr int kTries = 100;
    bool ended = false;
    for (int i = 0; i < kTries && !ended; ++i) {
        if (i % 10 == 0) ::kill(process_, i + 10 < kTries ? SIGTERM : SIGKILL);
        ended = waitpid(process_, nullptr, WNOHANG) != 0;
        if (!ended) usleep(20'000);
    }
    if (!ended) waitpid(process_, nullptr, 0);
    process_ = 0;
}

XUser::XUser()
    : xcb_(xcb_connect(nullptr, nullptr))
    , screen_(xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data) {}

XUser::~XUser() { xcb_disconnect(xcb_); }

xcb_atom_t XUser::atom(const std::string& name) const {
    const Freed<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
        xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr)};
    return reply->atom;
}

xcb_window_t XUser::hostWindow(int x, int y, int width, int height) const {
    const xcb_window_t window = xcb_generate_id(xcb_);
    const std::uint32_t values[] = {0x204060, 1, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, screen_->root,
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(xcb_, window);
    sync();
    return window;
}

void XUser::moveTo(int x, int y) const {
    xcb_test_fake_input(xcb_, XCB_MOTION_NOTIFY, 0, 0, screen_->root, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y), 0);
    sync();
}

void XUser::button(int number, bool down) const {
    xcb_test_fake_input(xcb_, down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE,
                        static_cast<std::uint8_t>(number), 0, screen_->root, 0, 0, 0);
    sync();
}

void XUser::click(int number) const {
    button(number, true);
    button(number, false);
}

void XUser::key(int keyCode, bool down) const {
    xcb_test_fake_input(xcb_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE,
                        static_cast<std::uint8_t>(keyCode), 0, screen_->root, 0, 0, 0);
    sync();
}

void XUser::type(int keyCode) const {
    key(keyCode, true);
    key(keyCode, false);
}

void XUser::sync() const {
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
}

std::uint32_t XUser::pixel(int x, int y) const {
    const std::vector<std::uint32_t> one = pixels(x, y, 1, 1);
    return one.empty() ? 0 : one.front();
}

std::vector<std::uint32_t> XUser::pixels(int x, int y, int width, int height) const {
    const Freed<xcb_get_image_reply_t> image{xcb_get_image_reply(
        xcb_,
        xcb_get_image(xcb_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), ~0U),
        nullptr)};
    std::vector<std::uint32_t> colors;
    if (!image) return colors;
    const std::uint8_t* bytes = xcb_get_image_data(image.value);
    for (int i = 0; i < width * height; ++i, bytes += 4)
        colors.push_back(static_cast<std::uint32_t>(bytes[2] << 16 | bytes[1] << 8 | bytes[0]));
    return colors;
}

std::vector<XUser::Popup> XUser::popups() const {
    std::vector<Popup> found;
    const Freed<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(xcb_, xcb_query_tree(xcb_, screen_->root), nullptr)};
    if (!tree) return found;
    const xcb_window_t* windows = xcb_query_tree_children(tree.value);
    for (int i = 0; i < xcb_query_tree_children_length(tree.value); ++i) {
        const Freed<xcb_get_window_attributes_reply_t> about{xcb_get_window_attributes_reply(
            xcb_, xcb_get_window_attributes(xcb_, windows[i]), nullptr)};
        const Freed<xcb_get_geometry_reply_t> place{
            xcb_get_geometry_reply(xcb_, xcb_get_geometry(xcb_, windows[i]), nullptr)};
        // It may have gone since.
        if (about && place && about->override_redirect != 0 &&
            about->map_state == XCB_MAP_STATE_VIEWABLE)
            found.push_back({place->x, place->y, place->width, place->height});
    }
    return found;
}

std::string XUser::property(xcb_window_t window, const std::string& name) const {
    const Freed<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        xcb_, xcb_get_property(xcb_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 16),
        nullptr)};
    if (!reply) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.value)),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.value))};
}

std::size_t XUser::clientCount() const {
    const Freed<xcb_res_query_clients_reply_t> reply{
        xcb_res_query_clients_reply(xcb_, xcb_res_query_clients(xcb_), nullptr)};
    return reply ? reply->num_clients : 0;
}

std::vector<int> XUser::receivedKeys() const {
    std::vector<int> keys;
    sync();
    while (Freed<xcb_generic_event_t> event{xcb_poll_for_event(xcb_)})
        if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
            keys.push_back(reinterpret_cast<xcb_key_press_event_t*>(event.value)->detail);
    return keys;
}
