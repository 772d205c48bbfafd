#include "widgets/boxes/TextArea.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>
#include <limits>

namespace tavrin {

namespace {

const QString LineEnd = QStringLiteral("\r\n");

/// A text of the box with line ends as they are kept. Qt's own conversion would make plain blanks of those
/// that must not break.
QString kept(QString shown)
{
    shown.replace(QChar::ParagraphSeparator, LineEnd);
    shown.replace(QChar::LineSeparator, LineEnd);
    return shown;
}

/// The start of `text` that has room, without half a line end or half a character.
QString fitting(QString text, qsizetype room)
{
    // The line ends of a text from elsewhere, all in the way in which they are counted.
    text.replace(LineEnd, QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    text.replace(u'\n', LineEnd);
    if (text.size() <= room)
        return text;
    qsizetype end = std::max<qsizetype>(room, 0);
    const bool isInside = end > 0 && ((text.at(end - 1) == u'\r' && text.at(end) == u'\n') ||
                                      (text.at(end - 1).isHighSurrogate() && text.at(end).isLowSurrogate()));
    return text.left(isInside ? end - 1 : end);
}

bool endsLine(const QKeyEvent& event)
{
    return event.matches(QKeySequence::InsertParagraphSeparator) ||
           event.matches(QKeySequence::InsertLineSeparator);
}

/// How many units the key brings into a text; 0 for one that does something else.
qsizetype unitsOf(const QKeyEvent& event)
{
    if (endsLine(event))
        return LineEnd.size();
    const bool isCommand =
        event.modifiers().testFlag(Qt::ControlModifier) && !event.modifiers().testFlag(Qt::AltModifier);
    const QString text = event.text();
    const bool isText = !text.isEmpty() && (text.at(0).isPrint() || text.at(0).isSurrogate());
    return isText && !isCommand ? text.size() : 0;
}

} // namespace

TextArea::TextArea(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
}

QString TextArea::shownText() const
{
    return document()->toRawText();
}

QString TextArea::Text() const
{
    const QString shown = shownText();
    return shown == m_textShown ? m_text : kept(shown);
}

void TextArea::SetText(const QString& text)
{
    setPlainText(text);
    m_text = text;
    m_textShown = shownText();
}

/// Units that may come in when as many as `replaced` of the kept text go.
qsizetype TextArea::roomFor(qsizetype replaced) const
{
    if (m_maxLength <= 0)
        return std::numeric_limits<qint32>::max();
    return m_maxLength - (kept(shownText()).size() - replaced);
}

qsizetype TextArea::roomBesideSelection() const
{
    return roomFor(kept(textCursor().selectedText()).size());
}

void TextArea::keyPressEvent(QKeyEvent* event)
{
    if (isReadOnly() || unitsOf(*event) <= std::max<qsizetype>(roomBesideSelection(), 0))
        QPlainTextEdit::keyPressEvent(event);
    else
        event->accept();
}

void TextArea::inputMethodEvent(QInputMethodEvent* event)
{
    const QString text = event->commitString();
    const QString taken =
        fitting(text, roomBesideSelection() + static_cast<qsizetype>(event->replacementLength()));
    if (!text.isEmpty() && taken != fitting(text, std::numeric_limits<qint32>::max()))
        event->setCommitString(taken, event->replacementStart(), event->replacementLength());
    QPlainTextEdit::inputMethodEvent(event);
}

void TextArea::insertFromMimeData(const QMimeData* source)
{
    if (!source->hasText())
        return;
    const QString text = fitting(source->text(), roomBesideSelection());
    if (text.isEmpty() && !source->text().isEmpty())
        return; // without room a selection stays too
    QMimeData plain;
    plain.setText(text);
    QPlainTextEdit::insertFromMimeData(&plain);
}

} // namespace tavrin
