#pragma once

#include "app/pages/MainWindowContent.h"

#include <QAbstractButton>
#include <QWidget>

#include <functional>

namespace tavrin {

class Localization;

namespace ui {

/// One button of the sidebar (`sidebarButton`), with a bar beside it while its page is shown.
class SidebarButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// @param y of its bottom, in points from the bottom of @p sidebar.
    SidebarButton(QWidget& sidebar, const QString& title, int y);

    /// The same for a button that is there.
    void moveTo(int y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

/// The left edge of the main window: icon, name, and a button for each page. The arrow keys move
/// between them, Return and the space bar press.
class Sidebar final : public QWidget {
    Q_OBJECT

public:
    using Handler = std::function<void(SettingsPage)>;

    /// @param notice what is out of the program's reach, at the bottom; empty for nothing.
    Sidebar(QWidget& window, const Localization& localization, const QString& notice,
        Handler selectSettingsPage);

    void setContent(const MainWindowContent& content);

    /// In the order of tavrin::sidebarButtons.
    [[nodiscard]] const QList<SidebarButton*>& sidebarButtons() const { return m_sidebarButtons; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addBrand();
    void addButtons(const Localization& localization);

    Handler m_selectSettingsPage;
    QList<SidebarButton*> m_sidebarButtons;
    QList<QWidget*> m_authenticatedSidebarViews;
    SidebarButton* m_accountSidebarButton = nullptr;
};

} // namespace ui
} // namespace tavrin
