#pragma once

#include "app/pages/MainWindowContent.h"
#include "app/windows/View.h"

#include <functional>

namespace tavrin {

class Preferences;
class Workspace;

/// Decides which page the main window shows. While no cloud session is stored it is the account
/// page. Main thread only.
class MainWindowController {
public:
    struct Neighbours {
        const Preferences& preferences;
        const Workspace& workspace;
        std::function<void(SettingsPage)> refresh; ///< Shows the page's present state.
    };

    /// @param neighbours must outlive this object.
    explicit MainWindowController(Neighbours neighbours);

    /// The window; null while there is none.
    void setView(View<MainWindowContent>* view) { m_view = view; }

    [[nodiscard]] const MainWindowContent& content() const { return m_content; }

    /// Shows the first page: the overview, or the account page for whoever has yet to sign in.
    void selectFirstPage();

    /// Shows @p page and has it read its state anew.
    void selectSettingsPage(SettingsPage page);

    /// Has the page that is shown read its state anew: it stands in the window only now.
    void refreshSelectedPage() const { m_neighbours.refresh(m_content.page); }

    /// The stored session came or went: shows or hides what needs one.
    void refreshSidebar();

private:
    void show(bool animates);

    Neighbours m_neighbours;
    View<MainWindowContent>* m_view = nullptr;
    MainWindowContent m_content;
};

} // namespace tavrin
