#pragma once

#include "app/pages/history/HistoryContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

#include <array>

namespace tavrin {
class HistoryController;
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Button;
class HistoryList;
class Label;
class Popup;
class TextField;

/// `historySettingsPage`: what was said and written, by days. Ctrl+F opens a field that looks for a
/// text in it, Escape closes it.
class HistoryPage final : public Page, public View<HistoryContent> {
    Q_OBJECT

public:
    /// @param controller, localization must outlive the page.
    HistoryPage(QWidget& parent, HistoryController& controller, const Localization& localization);
    ~HistoryPage() override;

    HistoryPage(const HistoryPage&) = delete;
    HistoryPage& operator=(const HistoryPage&) = delete;

    void setContent(const HistoryContent& content) override;
    [[nodiscard]] QWidget* firstControl() const override;
    void pageShown() override;
    void pageHidden() override;

protected:
    /// Escape ends the find, the arrow that points down leads from its field into the list.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addRetention();
    void addStorage();
    void addFind();
    void addList();
    void addEmptyState();
    void beginFind();
    void endFind();
    void showEmptyText(const HistoryContent& content);

    HistoryController& m_controller;
    const Localization& m_localization;
    Popup* m_historyRetentionPopup = nullptr;
    Label* m_historyStorageLabel = nullptr;
    Button* m_showFiles = nullptr;
    Button* m_clear = nullptr;
    TextField* m_findField = nullptr;
    HistoryList* m_list = nullptr;
    std::array<QWidget*, 2> m_emptyArt{}; ///< Shown while there are no rows, like the next.
    Label* m_emptyLabel = nullptr;
    QString m_query; ///< What the list shows the matches of.
};

} // namespace tavrin::ui
