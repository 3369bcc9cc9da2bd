#pragma once

#include <QWidget>

namespace tavrin::ui {

class Label;

/// A page of the main window with its title and subtitle (`settingsPageWithTitle`): 610 × 640
/// points, beside the sidebar. Draws the shadows of the cards that lie on it.
class Page : public QWidget {
    Q_OBJECT

public:
    Page(QWidget& parent, const QString& title, const QString& subtitle);

    /// What has the keyboard when the page is shown by a key; null: nothing in particular.
    [[nodiscard]] virtual QWidget* firstControl() const { return nullptr; }

    /// Called each time that it comes into sight and goes out of it, alone or with its window.
    virtual void pageShown() { }

    virtual void pageHidden() { }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};

} // namespace tavrin::ui
