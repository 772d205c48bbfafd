#pragma once

#include "base/export/Export.h"

#include <QPlainTextEdit>

namespace tavrin {

/// A text box of several lines that gives a text back as it came.
///
/// The limit of its length binds the person, not the code: what `SetText` brings stands whole, also when it
/// is longer, and then the person can take away but not add. A line end counts as two units, since one that
/// the person enters is kept as "\r\n". Tab leaves the box.
class TAVRIN_COMPANION_EXPORT TextArea : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit TextArea(QWidget* parent = nullptr);

    /// The very text that was set, until the person makes another one of it; from then on all its line ends
    /// are "\r\n". Undoing all changes brings the text back that was set.
    QString Text() const;
    /// Forgets what could be undone.
    void SetText(const QString& text);

    /// The longest text that a person can make, in UTF-16 units; 0, as at first, for no limit.
    qint32 MaxLength() const { return m_maxLength; }
    void SetMaxLength(qint32 length) { m_maxLength = length; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    QString shownText() const;
    qsizetype roomFor(qsizetype replaced) const;
    qsizetype roomBesideSelection() const;

    QString m_text;      // as it was set
    QString m_textShown; // what the box makes of it
    qint32 m_maxLength = 0;
};

} // namespace tavrin
