// A tool-tip window from within: its tools, and which of them the pointer rests on. All of it happens on the window's
// thread. It shows, times and draws itself with the documented functions only.
#pragma once

#include "commctrl.h"

#include <optional>
#include <string>
#include <vector>

namespace win32 {

class ToolTip {
public:
    explicit ToolTip(HWND window) : window_(window) {}
    ToolTip(const ToolTip&) = delete;
    ToolTip& operator=(const ToolTip&) = delete;
    ~ToolTip();

    bool add(const TOOLINFOA* info);
    void remove(const TOOLINFOA* info);
    void move(const TOOLINFOA* info);
    void set_text(const TOOLINFOA* info);
    std::size_t tool_count() const { return tools_.size(); }

    void relay(const MSG* message);
    void enable(bool enabled);
    void pop();
    void set_delay(WPARAM which, LPARAM milliseconds);
    int set_max_width(int width); // the one before

    void timer(UINT_PTR id);
    void paint();
    // The window is going: nothing is shown any more.
    void close() { closed_ = true; }

private:
    struct Tool {
        HWND window = nullptr;
        UINT_PTR id = 0;
        UINT flags = 0;
        RECT rect{};
        std::optional<std::string> text; // none: asked for
        LPARAM parameter = 0;

        HWND area_window() const { return flags & TTF_IDISHWND ? reinterpret_cast<HWND>(id) : window; }
        RECT area() const; // in the client area of that window
    };
    struct ToolKey {
        HWND window;
        UINT_PTR id;
        bool operator==(const ToolKey&) const = default;
    };
    struct Delays {
        UINT initial;
        UINT reshow;
        UINT pop;
    };
    enum class Phase {
        away,    // from all tools
        resting, // on the tool; the tip comes when nothing moves
        shown,
        done, // with this tool, until the pointer leaves it
    };

    static std::optional<Tool> tool_from(const TOOLINFOA* info);
    std::vector<Tool>::iterator find(ToolKey key);
    const Tool* tool_at(HWND window, POINT point) const;
    bool is_over(const Tool& tool) const;
    bool may_show(const Tool& tool) const;
    std::string text_of(Tool tool);

    void follow_pointer(const MSG& message);
    void rest();
    void show();
    void hide(Phase then);
    void place();
    UINT format() const;
    RECT measure(LONG widest);

    const HWND window_;
    std::vector<Tool> tools_;
    std::optional<ToolKey> current_;
    Phase phase_ = Phase::away;
    bool enabled_ = true;
    bool closed_ = false;
    bool reads_rtl_ = false;
    int max_width_ = -1;
    Delays delays_ = usual_delays(GetDoubleClickTime());
    POINT rested_at_{}; // where the pointer was last seen, on the screen
    std::string shown_text_;
    HFONT font_ = nullptr; // ours; made with the first text

    static Delays usual_delays(UINT initial) { return { initial, initial / 5, initial * 10 }; }
};

} // namespace win32
