#pragma once

class QMenuBar;

namespace plovik {

/// The commands that the menu bar of every repository window reaches. Each acts on the window in front.
class MenuTarget {
public:
    virtual ~MenuTarget() = default;

    virtual void openDocument() = 0;
    virtual void hideAll() = 0;
    virtual void showAll() = 0;
    virtual void quit() = 0;
    virtual void about() = 0;
    virtual void bringAllToFront() = 0;

    virtual void refreshRepository() = 0;
    virtual void showWorkingCopy() = 0;
    virtual void showHistory() = 0;
    virtual void showStashes() = 0;
};

namespace mainMenu {

/// Fills a window's menu bar. The window's own commands (close, minimise, zoom) act on the bar's window, the editing
/// ones on the widget with the focus. `target` outlives the bar.
void build(QMenuBar& bar, MenuTarget& target);

} // namespace mainMenu

} // namespace plovik
