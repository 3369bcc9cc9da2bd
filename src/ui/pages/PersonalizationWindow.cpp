#include "ui/pages/PersonalizationWindow.h"

#include "app/pages/PersonalizationController.h"
#include "app/pages/PersonalizationTexts.h"
#include "app/pages/WritingTones.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Label.h"
#include "ui/controls/Painting.h"
#include "ui/controls/Placing.h"
#include "ui/controls/Popup.h"
#include "ui/controls/ScrollBar.h"
#include "ui/style/BrandStyle.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr QSize windowSize(560, 420);

/// The box around a text of several lines. It shows by its border that the text has the keyboard.
class EditorBox final : public QWidget {
public:
    explicit EditorBox(QWidget& parent)
        : QWidget(&parent)
    {
    }

    /// The scrolling text inside.
    QTextEdit* addText()
    {
        constexpr QMargins inset(12, 10, 4, 10);
        m_text = new QTextEdit(this);
        m_text->setGeometry(rect().marginsRemoved(inset));
        m_text->installEventFilter(this);
        return m_text;
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
            update();
        return QWidget::eventFilter(watched, event);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        constexpr double radius = 9;
        const bool hasKeyboard = m_text && m_text->hasFocus();
        QPainter painter(this);
        drawBox(painter, rect(),
            {radius, brand::fieldBackground(),
                hasKeyboard ? brand::tavPurple() : brand::tavBorder(), hasKeyboard ? 2.0 : 1.0});
    }

private:
    QTextEdit* m_text = nullptr;
};

/// A text editor of several lines with its box at @p frame, from the bottom left of @p parent.
QTextEdit* personalizationEditorWithFrame(QWidget& parent, const QRect& frame)
{
    auto* const box = new EditorBox(parent);
    place(*box, frame);
    QTextEdit* const editor = box->addText();
    editor->setAcceptRichText(false);
    editor->setTabChangesFocus(true);
    editor->setFrameShape(QFrame::NoFrame);
    editor->setFont(brand::tavBodyFont());
    editor->document()->setDocumentMargin(0);
    editor->setVerticalScrollBar(new ScrollBar(editor));
    editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QPalette colors = editor->palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    editor->setPalette(colors);
    return editor;
}

/// The lines of texts of several lines are as far apart everywhere on the pages.
void spaceLines(QTextEdit& editor)
{
    constexpr double lineHeight = 20;
    QTextBlockFormat format;
    format.setLineHeight(lineHeight, QTextBlockFormat::FixedHeight);
    editor.document()->setUndoRedoEnabled(false); // Nobody wants to take this back.
    QTextCursor all(editor.document());
    all.select(QTextCursor::Document);
    all.mergeBlockFormat(format);
    editor.document()->setUndoRedoEnabled(true);
}

/// The text as it was typed: QTextEdit::toPlainText() makes ordinary spaces of the others.
QString typedText(const QTextEdit& editor)
{
    QString text = editor.document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace

PersonalizationWindow::PersonalizationWindow(PersonalizationController& controller)
    : QWidget(nullptr,
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint)
    , m_controller(controller)
{
    setWindowTitle(texts::personalizationTitle.toString());
    setFixedSize(windowSize);
    brand::applyBrandControlStylesInView(*this);
    QRect middle(QPoint(), windowSize);
    middle.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    move(middle.topLeft());

    new Label(*this, QRect(32, 362, 496, 34), brand::tavPageTitleFont(), brand::labelColor(),
        texts::personalizationHeading.toString());
    new Label(*this, QRect(32, 336, 496, 20), brand::tavBodyFont(), brand::secondaryLabelColor(),
        texts::personalizationNote.toString());
    addTone();
    addSample();
    addSave();
    new FocusRing(*this);
    controller.setView(this);
}

PersonalizationWindow::~PersonalizationWindow()
{
    m_controller.setView(nullptr);
}

void PersonalizationWindow::setContent(const PersonalizationContent& content)
{
    const QScopedValueRollback showing(m_isShowing, true);
    QStringList tones;
    for (const WritingToneRow& tone : writingTones)
        tones.append(tone.label.toString());
    m_tonePopup->setItems(tones, content.tone);
    m_styleSampleTextView->setPlainText(content.sample);
    spaceLines(*m_styleSampleTextView);
}

void PersonalizationWindow::bringToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    m_styleSampleTextView->setFocus(Qt::OtherFocusReason);
}

void PersonalizationWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void PersonalizationWindow::addTone()
{
    const QString caption = texts::defaultTone.toString();
    new Label(
        *this, QRect(32, 290, 72, 30), brand::tavRowTitleFont(), brand::labelColor(), caption);
    m_tonePopup = new Popup(*this, QRect(112, 290, 170, 30), caption);
    m_tonePopup->setObjectName(u"tonePopup"_s);
    connect(m_tonePopup, &QComboBox::activated, this,
        [this](int row) { m_controller.selectTone(row); });
}

void PersonalizationWindow::addSample()
{
    const QString caption = texts::writingSample.toString();
    new Label(
        *this, QRect(32, 250, 496, 22), brand::tavRowTitleFont(), brand::labelColor(), caption);
    m_styleSampleTextView = personalizationEditorWithFrame(*this, QRect(32, 84, 496, 162));
    m_styleSampleTextView->setObjectName(u"styleSampleTextView"_s);
    m_styleSampleTextView->setAccessibleName(caption);
    m_styleSampleTextView->setPlaceholderText(texts::pasteWritingSample.toString());
    connect(m_styleSampleTextView, &QTextEdit::textChanged, this, [this] {
        if (!m_isShowing)
            m_controller.changeSample(typedText(*m_styleSampleTextView));
    });
}

void PersonalizationWindow::addSave()
{
    auto* const save = new Button(
        *this, QRect(388, 28, 140, 36), texts::saveWritingStyle.toString(), Button::Look::Primary);
    save->setObjectName(u"saveWritingStyleButton"_s);
    connect(save, &QAbstractButton::clicked, this, [this] { m_controller.savePersonalization(); });
}

} // namespace tavrin::ui
