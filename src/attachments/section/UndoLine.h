#pragma once

#include "base/failure/Event.h"
#include "widgets/panels/GroupBox.h"

namespace tavrin {

class Label;
class TextLink;

/// One calm line that says what has been removed from a list, with a link that takes it back. It stays until
/// it is told otherwise. While it shows, the keys of an undo do the same in the list, whatever the form makes
/// of them elsewhere.
///
///     auto* line = new UndoLine(*list, strip);
///     line->Tell("report.docx"); // "report.docx removed. Undo"
///     m_undo = line->Undo.subscribe([this] { takeBack(); });
class UndoLine final : public GroupBox
{
    Q_OBJECT

public:
    UndoLine(QWidget& list, QWidget* parent);

    /// Says that something of this name has been removed.
    void Tell(const QString& name);
    /// Hides the line. The focus of its link goes to the list.
    void Clear();

    QWidget* link() const;

    /// The person wants it back. A handler may delete the line.
    Event<> Undo;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();

    QWidget& m_list;
    Label* lblRemoved;
    TextLink* lnkUndo;
    Subscription m_click;
    bool m_hasTakenPress = false; // of the keys, the last time that they went down
};

} // namespace tavrin
