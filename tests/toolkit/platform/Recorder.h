// Writes down what a window tells its frame, and answers as told.
#pragma once

#include "draw/Renderer.h"
#include "platform/Frame.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

struct Recorder final : Sorel::IFrameEvents {
    using CPoint = Sorel::CPoint;

    std::vector<std::string> log;
    int keyAnswer = 1;
    bool acceptDrops = true;
    std::unique_ptr<Sorel::IOSBitmap> surface;
    Sorel::IFrame* frame = nullptr;
    Sorel::IOSTextEdit* textEdit = nullptr;
    std::function<void(const std::string&)> during; // runs inside each event
    int idles = 0;

    /// A surface of one colour.
    void paint(int width, int height, Sorel::CColor color) {
        surface = frame->createSurface();
        surface->create(width, height);
        Sorel::CRenderer renderer;
        renderer.attach(*surface);
        renderer.clear(color);
    }
    /// The entries so far, parted by "; ", without those that begin with `without`.
    std::string take(const std::string& without = "move") {
        std::string all;
        for (const std::string& entry : log)
            if (without.empty() || entry.rfind(without, 0) != 0)
                all += (all.empty() ? "" : "; ") + entry;
        log.clear();
        return all;
    }
    bool saw(const std::string& entry) const {
        return std::find(log.begin(), log.end(), entry) != log.end();
    }

    int platformMouseDown(CPoint where, std::int32_t buttons) override {
        return note("down", where, buttons), 1;
    }
    int platformMouseUp(CPoint where, std::int32_t buttons) override {
        return note("up", where, buttons), 1;
    }
    int platformMouseMoved(CPoint where, std::int32_t buttons) override {
        return note("move", where, buttons), 1;
    }
    void platformMouseEntered(CPoint where, std::int32_t buttons) override {
        note("enter", where, buttons);
    }
    void platformMouseExited(CPoint, std::int32_t) override { note("exit"); }
    bool platformWheel(CPoint where, int axis, float distance, std::int32_t buttons) override {
        std::ostringstream text;
        text << "wheel" << axis << (distance > 0.0F ? "+" : "") << distance;
        return note(text.str(), where, buttons), true;
    }
    int platformKeyDown(const Sorel::KeyEvent& key) override {
        std::ostringstream text;
        text << "key " << int{key.virtualKey} << " '" << key.character << "' "
             << int{key.modifiers};
        note(text.str());
        if (textEdit != nullptr) return textEdit->onKeyDown(key) ? 1 : keyAnswer;
        return keyAnswer;
    }
    int platformKeyUp(const Sorel::KeyEvent&) override { return keyAnswer; }
    void platformDragEnter(Sorel::CDragContainer& drag, CPoint where) override {
        note("drag enter " + drag.entry(0)->bytes, where, 0);
        frame->setDropAccepted(acceptDrops);
    }
    void platformDragMove(Sorel::CDragContainer&, CPoint where) override {
        note("drag move", where, 0);
    }
    void platformDragLeave(Sorel::CDragContainer&, CPoint) override { note("drag leave"); }
    bool platformDrop(Sorel::CDragContainer& drag, CPoint where) override {
        note("drop of " + std::to_string(drag.count()), where, 0);
        return true;
    }
    Sorel::IOSBitmap* platformSurface() override { return surface.get(); }
    void platformIdle() override { ++idles; }
    void platformFocusLost() override { note("focus lost"); }
    void platformCloseRequested() override { note("close"); }
    void platformResized(double, double) override { note("resized"); }

  private:
    void note(const std::string& text) {
        log.push_back(text);
        if (during) during(text);
    }
    void note(const std::string& what, CPoint where, std::int32_t buttons) {
        std::ostringstream text;
        text << what << " " << where.x << "," << where.y;
        if (buttons != 0) text << " " << std::hex << buttons;
        note(text.str());
    }
};

/// Writes down how editing ends.
struct EditRecorder final : Sorel::ITextEditCallback {
    std::string log;
    bool takesKeys = true;
    std::function<void()> atEnd;

    void platformLooseFocus(bool commit) override {
        log += commit ? "commit " : "restore ";
        if (atEnd) atEnd();
    }
    bool platformKey(const Sorel::KeyEvent& key) override {
        log += "key" + std::to_string(key.virtualKey) + " ";
        return takesKeys;
    }
    void platformTextChanged() override {}
};

inline Sorel::MenuItem menuItem(const std::string& title, int id) {
    Sorel::MenuItem item;
    item.title = title;
    item.id = id;
    return item;
}
