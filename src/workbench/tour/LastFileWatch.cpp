#include "workbench/tour/LastFileWatch.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>

#include <utility>

namespace tavrin::workbench {

LastFileWatch::LastFileWatch(std::function<void(QWidget&)> act)
    : m_act(std::move(act))
{
    qApp->installEventFilter(this);
}

bool LastFileWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint && watched->objectName() == QLatin1String("lblFilePercent")) {
        if (const auto* percent = qobject_cast<QLabel*>(watched))
            look(*percent);
    }
    return false;
}

void LastFileWatch::look(const QLabel& percent)
{
    QWidget* dialog = percent.window();
    const auto* bar = dialog->findChild<QProgressBar*>(QStringLiteral("ProgressBar"));
    const bool isLast = bar && bar->value() == bar->maximum() && !percent.text().isEmpty();
    if (!isLast || std::exchange(m_hasSeen, true))
        return;
    // Not in the middle of painting.
    QMetaObject::invokeMethod(
        dialog, [this, dialog] { act(*dialog); }, Qt::QueuedConnection);
}

void LastFileWatch::act(QWidget& dialog)
{
    m_hasActed = true;
    try {
        m_act(dialog);
    } catch (...) {
        m_failure = Error::fromCurrentException();
    }
}

} // namespace tavrin::workbench
