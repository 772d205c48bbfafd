#include "attachments/section/AttachmentsPrivate.h"
#include "attachments/section/RemovedRow.h"
#include "attachments/section/UndoLine.h"
#include "frame/control_frame/FailurePolicy.h"
#include "widgets/labels/Label.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/GroupBox.h"

#include <QPointer>

namespace tavrin {

/// The line lies over the words beside the link, which come back when there is nothing to take back any more.
void Attachments::Private::buildUndo()
{
    picUndo = new UndoLine(*lvwFiles, picToolbar);
    m_subscriptions.push_back(picUndo->Undo.subscribe([this] { undoRemove(); }));
}

void Attachments::Private::placeUndo()
{
    constexpr Twips indent = 240; // what is said here does not go on from the link's words
    const QPoint words = Label4->pos();
    picUndo->setGeometry(words.x(), 0, std::max(0, picToolbar->width() - words.x()), picToolbar->height());
    picUndo->setContentsMargins(toPixels(indent), words.y(), 0, 0);
}

void Attachments::Private::showRemoved()
{
    if (m_removed.empty())
        picUndo->Clear();
    else
        picUndo->Tell(m_removed.back().name());
}

void Attachments::Private::forgetRemoved()
{
    m_removed.clear();
    showRemoved();
}

void Attachments::Private::keepRemoved(RemovedRow removed)
{
    removed.noteRemoval(*m_attachments);
    m_removed.push_back(std::move(removed));
    showRemoved();
}

/// Of the person, who is not overruled by an undo.
void Attachments::Private::noteChosenCover()
{
    for (RemovedRow& removed : m_removed)
        removed.noteChosenCover();
}

void Attachments::Private::undoRemove()
{
    reportInBox(&q, QStringLiteral("Unexpected error putting attachment back: "),
                QStringLiteral("Attachments"), [this] {
                    const QPointer<Attachments> self(&q); // a follower of the fields may delete the control
                    const tvTableCollectionPtr attachments = m_attachments;
                    SaveDetails(); // of the row that shows until now
                    if (self && attachments == m_attachments && !m_removed.empty())
                        putLastBack();
                });
}

void Attachments::Private::putLastBack()
{
    const QPointer<Attachments> self(&q);                   // a follower of the rows may delete the control
    const tvTableCollectionPtr attachments = m_attachments; // or bind another record
    const auto isBound = [&] { return self && attachments == m_attachments; };
    RemovedRow removed = m_removed.back();
    m_removed.pop_back();
    try {
        removed.putBack(*attachments);
    } catch (...) {
        // The row may be back although a follower failed.
        if (isBound()) {
            if (removed.indexIn(*attachments) == 0)
                m_removed.push_back(removed);
            showRemoved();
            if (isBound())
                continueOnError([this] { RefreshList(); });
        }
        throw;
    }
    if (!isBound())
        return;
    showRemoved();
    if (!isBound()) // whoever hears of the focus may do so too
        return;
    RefreshList();
    SelectRow(removed.indexIn(*attachments));
}

} // namespace tavrin
