#pragma once

#include "app/pages/DictionaryContent.h"
#include "app/windows/View.h"
#include "ui/controls/Page.h"

#include <array>

namespace tavrin {
class DictionaryController;
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Button;
class CheckBox;
class DictionaryList;
class Label;
class Segments;
class TextField;

/// `dictionarySettingsPage`: the terms of the personal dictionary, and what makes and changes them.
class DictionaryPage final : public Page, public View<DictionaryContent> {
    Q_OBJECT

public:
    /// @param controller, localization must outlive the page.
    DictionaryPage(
        QWidget& parent, DictionaryController& controller, const Localization& localization);
    ~DictionaryPage() override;

    DictionaryPage(const DictionaryPage&) = delete;
    DictionaryPage& operator=(const DictionaryPage&) = delete;

    void setContent(const DictionaryContent& content) override;
    [[nodiscard]] QWidget* firstControl() const override;

protected:
    /// Escape empties the search field, the arrow leads from it to the terms.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addSearch();
    void addNewTerm();
    void addOptions();
    void addTerms();
    void orderTabs();
    void showEmptyText(const QString& text);

    DictionaryController& m_controller;
    const Localization& m_localization;
    TextField* m_dictionarySearchField = nullptr;
    Segments* m_dictionaryFilterControl = nullptr;
    TextField* m_dictionaryNewTermField = nullptr;
    Button* m_addButton = nullptr;
    CheckBox* m_learnCorrections = nullptr;
    Button* m_writingStyleButton = nullptr;
    DictionaryList* m_list = nullptr;
    std::array<QWidget*, 2> m_emptyArt{}; ///< Shown while there are no rows, like the next.
    Label* m_emptyLabel = nullptr;
    Label* m_countLabel = nullptr;

    DictionaryContent m_shown; ///< Without its rows.
    bool m_isShowing = false; ///< What changes now comes from the controller.
};

} // namespace tavrin::ui
