#include "spell/frmSpelling.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "spell/Sentence.h"
#include "spell/SpellingWalk.h"
#include "widgets/boxes/TextBox.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin {

namespace {

constexpr Twips Margin = 240;
constexpr Twips Gap = 180;
constexpr Twips SmallGap = 60;
constexpr Twips TextWidth = 5100;
constexpr int SentenceLines = 5; // as many as the longest part of a sentence needs
constexpr int SuggestionLines = 6;
constexpr int MessageLines = 2;

QLabel* newLabel(QWidget* form, const char* name, const QString& text)
{
    auto* label = new QLabel(text, form);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QPushButton* newButton(QWidget* form, const char* name, const QString& caption)
{
    auto* button = new QPushButton(caption, form);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

/// Of what asks for attention: readable on the theme's ground.
QColor markColor(const QPalette& palette, QPalette::ColorRole ground)
{
    constexpr QRgb onLight = 0xFFB3261E;
    constexpr QRgb onDark = 0xFFFF9A8F;
    constexpr int middle = 128;
    return QColor(palette.color(ground).lightness() < middle ? onDark : onLight);
}

int linesHeight(const QWidget& widget, int lines)
{
    return widget.fontMetrics().lineSpacing() * lines;
}

/// The text with places to break where a word, as the path of a file, is wider than the label.
QString withBreaks(const QString& text, const QLabel& label)
{
    constexpr QChar invisibleBreak(0x200B);
    constexpr qsizetype step = 20; // units of a word that is too wide
    QStringList words = text.split(u' ');
    for (QString& word : words) {
        if (label.fontMetrics().horizontalAdvance(word) < label.width())
            continue;
        for (qsizetype i = word.size() - word.size() % step; i > 0; i -= step)
            word.insert(i, invisibleBreak);
    }
    return words.join(u' ');
}

/// Where a window of `size` may stand on the screen without covering the word: where it is when it can stay
/// there, else below, above, at the right or at the left of it; in the screen's lower corner when there is no
/// room anywhere.
QPoint clearOf(const QRect& word, const QRect& window, const QRect& screen)
{
    constexpr int distance = 12; // pixels
    const QRect shunned = word.adjusted(-distance, -distance, distance, distance);
    const auto held = [&](QPoint corner) {
        const int x =
            qBound(screen.left(), corner.x(), qMax(screen.left(), screen.right() + 1 - window.width()));
        const int y =
            qBound(screen.top(), corner.y(), qMax(screen.top(), screen.bottom() + 1 - window.height()));
        return QRect(QPoint(x, y), window.size());
    };
    const std::array<QPoint, 5> places{
        window.topLeft(),
        QPoint(window.x(), shunned.bottom() + 1),
        QPoint(window.x(), shunned.top() - window.height()),
        QPoint(shunned.right() + 1, window.y()),
        QPoint(shunned.left() - window.width(), window.y()),
    };
    for (const QPoint& place : places) {
        if (!held(place).intersects(shunned))
            return held(place).topLeft();
    }
    return held(screen.bottomRight()).topLeft();
}

} // namespace

frmSpelling::frmSpelling(std::shared_ptr<SpellingWalk> walk, bool allowAdd, QWidget* parent)
    : Form(parent)
    , m_walk(std::move(walk))
    , lblSentence(newLabel(this, "lblSentence", QStringLiteral("Not in the dictionary:")))
    , txtSentence(new QTextEdit(this))
    , lblChangeTo(newLabel(this, "lblChangeTo", QStringLiteral("Change &to:")))
    , txtChangeTo(new TextBox(this))
    , lblSuggestions(newLabel(this, "lblSuggestions", QStringLiteral("&Suggestions:")))
    , lstSuggestions(new QListWidget(this))
    , lblMessage(newLabel(this, "lblMessage", QString()))
    , cmdIgnore(newButton(this, "cmdIgnore", QStringLiteral("&Ignore")))
    , cmdIgnoreAll(newButton(this, "cmdIgnoreAll", QStringLiteral("I&gnore All")))
    , cmdAdd(newButton(this, "cmdAdd", QStringLiteral("&Add")))
    , cmdChange(newButton(this, "cmdChange", QStringLiteral("&Change")))
    , cmdChangeAll(newButton(this, "cmdChangeAll", QStringLiteral("Change A&ll")))
    , cmdUndo(newButton(this, "cmdUndo", QStringLiteral("&Undo Last")))
    , cmdCancel(newButton(this, "cmdCancel", QStringLiteral("Ca&ncel")))
{
    setObjectName(QStringLiteral("frmSpelling"));
    setWindowTitle(QStringLiteral("Spelling"));
    cmdAdd->setVisible(allowAdd);
    cmdAdd->setEnabled(allowAdd);
    build();
    arrange();
    connectButtons();
    // A box that dies takes the question with it.
    connect(m_walk->textBox(), &QObject::destroyed, this, [this] { hide(); });
    showWord();
}

frmSpelling::~frmSpelling() = default;

void frmSpelling::build()
{
    txtSentence->setObjectName(QStringLiteral("txtSentence"));
    txtSentence->setAccessibleName(QStringLiteral("Sentence"));
    txtSentence->setReadOnly(true);
    txtSentence->setUndoRedoEnabled(false);
    txtSentence->setFocusPolicy(Qt::ClickFocus); // to copy from; the keyboard has the word in the boxes below
    txtSentence->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtSentence->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    const int frame = 2 * (txtSentence->frameWidth() + qRound(txtSentence->document()->documentMargin()));
    txtSentence->setFixedSize(toPixels(TextWidth), linesHeight(*txtSentence, SentenceLines) + frame);

    txtChangeTo->setObjectName(QStringLiteral("txtChangeTo"));
    txtChangeTo->setAccessibleName(QStringLiteral("Change to"));
    lblChangeTo->setBuddy(txtChangeTo);
    lstSuggestions->setObjectName(QStringLiteral("lstSuggestions"));
    lstSuggestions->setAccessibleName(QStringLiteral("Suggestions"));
    lstSuggestions->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lstSuggestions->setTextElideMode(Qt::ElideMiddle);
    lstSuggestions->setFixedHeight(linesHeight(*lstSuggestions, SuggestionLines) +
                                   2 * lstSuggestions->frameWidth());
    lblSuggestions->setBuddy(lstSuggestions);
    cmdChange->setDefault(true);

    // Its room is kept while there is nothing to say: the buttons stay below the mouse.
    lblMessage->setWordWrap(true);
    lblMessage->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblMessage->setFixedSize(toPixels(TextWidth), linesHeight(*lblMessage, MessageLines));
    applyMessageColor();

    const QWidgetList inOrder{txtChangeTo, lstSuggestions, cmdIgnore, cmdIgnoreAll, cmdAdd,
                              cmdChange,   cmdChangeAll,   cmdUndo,   cmdCancel};
    for (qsizetype i = 0; i < inOrder.size(); ++i) {
        inOrder[i]->installEventFilter(this);
        if (i > 0)
            setTabOrder(inOrder[i - 1], inOrder[i]);
    }
}

void frmSpelling::arrange()
{
    auto* texts = new QVBoxLayout;
    texts->setSpacing(toPixels(SmallGap));
    texts->addWidget(lblSentence);
    texts->addWidget(txtSentence);
    texts->addSpacing(toPixels(Gap - SmallGap));
    texts->addWidget(lblChangeTo);
    texts->addWidget(txtChangeTo);
    texts->addSpacing(toPixels(Gap - SmallGap));
    texts->addWidget(lblSuggestions);
    texts->addWidget(lstSuggestions);
    texts->addWidget(lblMessage);

    auto* buttons = new QVBoxLayout;
    buttons->setSpacing(2 * toPixels(SmallGap));
    // Level with the sentence.
    buttons->addSpacing(lblSentence->sizeHint().height() + toPixels(SmallGap));
    buttons->addWidget(cmdIgnore);
    buttons->addWidget(cmdIgnoreAll);
    buttons->addWidget(cmdAdd);
    buttons->addSpacing(toPixels(Gap));
    buttons->addWidget(cmdChange);
    buttons->addWidget(cmdChangeAll);
    buttons->addSpacing(toPixels(Gap));
    buttons->addWidget(cmdUndo);
    buttons->addStretch();
    buttons->addWidget(cmdCancel);

    auto* layout = new QHBoxLayout(this);
    const int margin = toPixels(Margin);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addLayout(texts);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void frmSpelling::connectButtons()
{
    using Decision = std::function<void(SpellingWalk&)>;
    const auto onClick = [this](QPushButton* button, const char* where, const Decision& decision) {
        connectGuarded(button, &QPushButton::clicked, this, where, [this, decision] { decide(decision); });
    };
    onClick(cmdIgnore, "cmdIgnore_Click", [](SpellingWalk& walk) { walk.ignore(); });
    onClick(cmdIgnoreAll, "cmdIgnoreAll_Click", [](SpellingWalk& walk) { walk.ignoreAll(); });
    onClick(cmdAdd, "cmdAdd_Click", [](SpellingWalk& walk) { walk.add(); });
    onClick(cmdChange, "cmdChange_Click", [this](SpellingWalk& walk) { walk.change(txtChangeTo->Text()); });
    onClick(cmdChangeAll, "cmdChangeAll_Click",
            [this](SpellingWalk& walk) { walk.changeAll(txtChangeTo->Text()); });
    onClick(cmdUndo, "cmdUndo_Click", [](SpellingWalk& walk) { walk.undo(); });
    connectGuarded(cmdCancel, &QPushButton::clicked, this, "cmdCancel_Click", [this] { reject(); });

    connectGuarded(lstSuggestions, &QListWidget::currentTextChanged, this, "lstSuggestions_Click",
                   [this](const QString& text) {
                       if (lstSuggestions->isEnabled())
                           txtChangeTo->SetText(text);
                   });
    connectGuarded(lstSuggestions, &QListWidget::itemDoubleClicked, this, "lstSuggestions_DblClick",
                   [this] { cmdChange->click(); });
    m_typed = txtChangeTo->Change.subscribe([this] { enableButtons(); });
}

void frmSpelling::decide(const std::function<void(SpellingWalk&)>& decision)
{
    const QPointer<frmSpelling> self(this); // a handler of the box may close its window
    const std::shared_ptr<SpellingWalk> walk = m_walk;
    const FoundWord place = walk->place();
    const QString word = walk->word();
    QString failure;
    try {
        decision(*walk);
    } catch (...) {
        failure = Error::fromCurrentException().Description;
    }
    if (!self)
        return;
    const bool staysAtWord = !failure.isEmpty() && walk->place() == place && walk->word() == word;
    if (!walk->isAtWord())
        hide();
    else if (!staysAtWord)
        showWord(); // else what the person has typed stays too
    if (failure.isEmpty())
        failure = walk->note();
    if (!failure.isEmpty())
        showMessage(failure);
}

void frmSpelling::showWord()
{
    showMessage(m_walk->canChange() ? QString() : QStringLiteral("The text of this box cannot be changed."));
    showSentence();
    showSuggestions();
    enableButtons();
    announceWord();
    if (isVisible())
        keepClearOfWord();
}

void frmSpelling::showSentence()
{
    const Sentence sentence = sentenceAround(m_walk->text(), m_walk->place());
    QTextCharFormat mark;
    mark.setForeground(markColor(palette(), QPalette::Base));
    mark.setFontUnderline(true); // not by colour alone
    mark.setFontWeight(QFont::Bold);
    QTextCursor cursor(txtSentence->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(sentence.Text, QTextCharFormat());
    cursor.setPosition(static_cast<int>(sentence.Word.Offset));
    txtSentence->setTextCursor(cursor);
    cursor.setPosition(static_cast<int>(sentence.Word.end()), QTextCursor::KeepAnchor);
    cursor.setCharFormat(mark);
    txtSentence->ensureCursorVisible();
}

void frmSpelling::showSuggestions()
{
    const QString word = m_walk->word();
    QStringList suggestions;
    try {
        suggestions = m_walk->suggestions();
    } catch (...) {
        showMessage(Error::fromCurrentException().Description);
    }
    const bool canChange = m_walk->canChange();
    const bool hasSome = !suggestions.isEmpty();
    lstSuggestions->setEnabled(false); // while it is filled nothing is chosen
    lstSuggestions->clear();
    lstSuggestions->addItems(hasSome ? suggestions : QStringList(QStringLiteral("(no suggestions)")));
    // A row that is marked promises that Enter takes it.
    lstSuggestions->setCurrentRow(hasSome && canChange ? 0 : -1);
    lstSuggestions->setEnabled(hasSome && canChange);
    txtChangeTo->setEnabled(canChange);
    // Cut, it would be written in place of the word.
    const bool fits = word.size() <= LongestWordShown;
    txtChangeTo->setPlaceholderText(fits ? QString() : QStringLiteral("Too long to be shown"));
    txtChangeTo->SetText(hasSome ? suggestions.first() : fits ? word : QString());
    txtChangeTo->selectAll();

    if (lstSuggestions->isEnabled())
        lstSuggestions->setFocus();
    else if (canChange)
        txtChangeTo->setFocus();
    else
        cmdIgnore->setFocus();
}

void frmSpelling::enableButtons()
{
    const QString text = txtChangeTo->Text();
    const bool isChange = m_walk->canChange() && !text.trimmed().isEmpty() && text != m_walk->word();
    cmdChange->setEnabled(isChange);
    cmdChangeAll->setEnabled(isChange);
    cmdUndo->setEnabled(m_walk->canUndo());
}

void frmSpelling::announceWord()
{
    const QString sentence = txtSentence->toPlainText();
    lblSentence->setAccessibleName(lblSentence->text() + u' ' + shownWord(m_walk->word()));
    txtChangeTo->setAccessibleDescription(lblSentence->accessibleName() + QStringLiteral(". ") + sentence);
    lstSuggestions->setAccessibleDescription(txtChangeTo->accessibleDescription());
    QAccessibleEvent announcement(lblSentence, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void frmSpelling::showMessage(const QString& text)
{
    lblMessage->setText(withBreaks(text, *lblMessage));
    lblMessage->setMinimumHeight(0); // which the height for a width is never below
    // Nobody can act on half a reason; the buttons that are pressed most stay where they are.
    lblMessage->setFixedHeight(
        std::max(linesHeight(*lblMessage, MessageLines), lblMessage->heightForWidth(lblMessage->width())));
    if (text.isEmpty())
        return;
    QAccessibleEvent announcement(lblMessage, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void frmSpelling::applyMessageColor()
{
    QPalette colors;
    colors.setColor(QPalette::WindowText, markColor(palette(), QPalette::Window));
    lblMessage->setPalette(colors);
}

void frmSpelling::keepClearOfWord()
{
    const QScreen* shown = screen();
    if (!shown)
        return;
    const QRect frame = frameGeometry();
    const QPoint place = clearOf(m_walk->shownAt(), frame, shown->availableGeometry());
    if (place != frame.topLeft())
        move(place);
}

void frmSpelling::reject()
{
    m_canceled = true;
    hide();
}

void frmSpelling::showEvent(QShowEvent* event)
{
    Form::showEvent(event);
    if (!event->spontaneous())
        keepClearOfWord();
}

void frmSpelling::changeEvent(QEvent* event)
{
    Form::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    applyMessageColor();
    if (m_walk->isAtWord())
        showSentence();
}

bool frmSpelling::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return Form::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (isEnter && key->isAutoRepeat())
        return true; // one press decides about one word
    const bool isArrow = key->key() == Qt::Key_Up || key->key() == Qt::Key_Down;
    if (watched == txtChangeTo && isArrow && lstSuggestions->isEnabled()) {
        QCoreApplication::sendEvent(lstSuggestions, event);
        return true;
    }
    return Form::eventFilter(watched, event);
}

} // namespace tavrin
