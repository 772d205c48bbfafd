#pragma once

#include "base/failure/Error.h"

#include <QObject>

#include <functional>
#include <optional>

class QLabel;
class QWidget;

namespace tavrin::workbench {

/// Acts once in the middle of the last file that a download of all fetches. It goes by what the dialog shows
/// and not by the time: a share of the file stands beside the full bar, and is painted right before the
/// person is let act.
class LastFileWatch final : public QObject
{
public:
    explicit LastFileWatch(std::function<void(QWidget& dialog)> act);

    bool hasActed() const { return m_hasActed; }
    /// What went wrong while it acted.
    const std::optional<Error>& failure() const { return m_failure; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look(const QLabel& percent);
    void act(QWidget& dialog);

    std::function<void(QWidget&)> m_act;
    std::optional<Error> m_failure;
    bool m_hasSeen = false;
    bool m_hasActed = false;
};

} // namespace tavrin::workbench
