#include "ui/window/Sidebar.h"

#include "app/pages/SidebarTexts.h"
#include "app/settings/Localization.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Label.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/style/ApplicationIcon.h"
#include "ui/style/BrandStyle.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QRect sidebarFrame(0, 0, 170, 640);
constexpr QRect iconFrame(14, 574, 42, 42);
constexpr QRect brandFrame(68, 584, 84, 22);
constexpr QRect useFrame(28, 535, 120, 16);
constexpr QRect settingsFrame(28, 358, 120, 16);
constexpr QRect noticeFrame(14, 22, 142, 150);
constexpr double brandSize = 16;
constexpr QSize buttonSize(142, 40);
constexpr int buttonX = 14;
constexpr double buttonRadius = 10;
constexpr QRectF indicator(3, 10, 3, 20);
constexpr double indicatorRadius = 1.5;

/// Of the bottoms of the buttons, in the order of tavrin::sidebarButtons.
constexpr std::array buttonY{490, 446, 402, 314, 270, 226, 182};
static_assert(buttonY.size() == tavrin::sidebarButtons.size());

} // namespace

SidebarButton::SidebarButton(QWidget& sidebar, const QString& title, int y)
    : QAbstractButton(&sidebar)
{
    setText(u"  "_s + title);
    setAccessibleName(title);
    setFont(brand::tavSidebarFont());
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    FocusRing::setRadius(*this, buttonRadius);
    resize(buttonSize);
    moveTo(y);
}

void SidebarButton::moveTo(int y)
{
    place(*this, QRect(QPoint(buttonX, y), buttonSize));
}

void SidebarButton::paintEvent(QPaintEvent* /*event*/)
{
    constexpr int hoverAlpha = 140;
    constexpr int pressedAlpha = 217;
    constexpr int titleInset = 4;
    QPainter painter(this);
    if (isChecked())
        drawBox(painter, rect(), {buttonRadius, Qt::white});
    else if (isDown() || underMouse())
        drawBox(painter, rect(),
            {buttonRadius, QColor(255, 255, 255, isDown() ? pressedAlpha : hoverAlpha)});
    if (isChecked())
        drawBox(painter, indicator, {indicatorRadius, brand::tavPurple()});
    constexpr Fitting oneLineThatShrinks{1, 1};
    const TextLines title = fitText(text(), font(), width() - titleInset - 2, oneLineThatShrinks);
    painter.setFont(title.font);
    painter.setPen(brand::labelColor());
    painter.drawText(rect().adjusted(titleInset, 0, 0, 0),
        Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title.lines.value(0));
}

void SidebarButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return click();
    if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down)
        return QAbstractButton::keyPressEvent(event);
    const bool up = event->key() == Qt::Key_Up;
    QWidget* next = nullptr;
    const auto buttons = parentWidget()->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly);
    for (QAbstractButton* const button : buttons) {
        const bool isBeyond = up ? button->y() < y() : button->y() > y();
        const bool isNearer = !next || (button->y() < next->y()) != up;
        if (button->isVisible() && isBeyond && isNearer)
            next = button;
    }
    if (next)
        next->setFocus(Qt::TabFocusReason);
}

Sidebar::Sidebar(QWidget& window, const Localization& localization, const QString& notice,
    Handler selectSettingsPage)
    : QWidget(&window)
    , m_selectSettingsPage(std::move(selectSettingsPage))
{
    place(*this, sidebarFrame);
    addBrand();
    addButtons(localization);
    if (!notice.isEmpty()) {
        constexpr Fitting manyLines{0, 9};
        auto* const label =
            new Label(*this, noticeFrame, brand::tavCaptionFont(), brand::secondaryLabelColor());
        label->setFitting(manyLines);
        label->setFullText(notice);
    }
}

void Sidebar::addBrand()
{
    auto* const icon = new QLabel(this);
    icon->setPixmap(applicationPicture(iconFrame.width(), devicePixelRatio()));
    place(*icon, iconFrame);
    new Label(*this, brandFrame, brand::systemFont(brandSize, QFont::Bold), brand::labelColor(),
        u"Tavrin"_s);
}

void Sidebar::addButtons(const Localization& localization)
{
    const auto addSection = [&](const QRect& frame, const LocalizedText& title) {
        m_authenticatedSidebarViews.append(new Label(*this, frame, brand::tavSectionFont(),
            brand::secondaryLabelColor(), localization.LT(title)));
    };
    addSection(useFrame, texts::useSection);
    for (std::size_t i = 0; i < tavrin::sidebarButtons.size(); ++i) {
        const SettingsPage page = tavrin::sidebarButtons.at(i);
        if (page == SettingsPage::General)
            addSection(settingsFrame, texts::settingsSection);
        auto* const button =
            new SidebarButton(*this, localization.LT(texts::sidebarTitles.at(i)), buttonY.at(i));
        m_sidebarButtons.append(button);
        if (page == SettingsPage::Account)
            m_accountSidebarButton = button;
        else
            m_authenticatedSidebarViews.append(button);
        // Screen readers switch a button that can be checked, and do not click it.
        connect(
            button, &QAbstractButton::toggled, this, [this, page] { m_selectSettingsPage(page); });
    }
}

void Sidebar::setContent(const MainWindowContent& content)
{
    for (QWidget* const view : std::as_const(m_authenticatedSidebarViews))
        view->setVisible(content.isSignedIn);
    m_accountSidebarButton->moveTo(content.accountSidebarButtonY);
    for (std::size_t i = 0; i < tavrin::sidebarButtons.size(); ++i) {
        SidebarButton* const button = m_sidebarButtons[static_cast<qsizetype>(i)];
        const QSignalBlocker noSelection(button);
        button->setChecked(tavrin::sidebarButtons.at(i) == content.page);
    }
    update();
}

void Sidebar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), brand::tavSidebar());
    painter.fillRect(QRect(width() - 1, 0, 1, height()), brand::tavBorder());
    for (const SidebarButton* const button : std::as_const(m_sidebarButtons)) {
        if (button->isChecked() && button->isVisible())
            drawShadow(
                painter, button->geometry(), static_cast<int>(buttonRadius), selectionShadow());
    }
}

} // namespace tavrin::ui
