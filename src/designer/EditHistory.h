#pragma once

#include <QVariant>

#include <optional>
#include <vector>

namespace tavrin::designer {

/// The values of a control's saved properties, in their order.
using SavedValues = std::vector<QVariant>;

/// Whether all of them are the same.
bool sameValues(const SavedValues& a, const SavedValues& b);

/// What stood behind the values that the property editor has shown of one control.
///
/// The editor shows less than a control holds: Null as 0, a colour of the theme as a fixed one; and a setter
/// may change other properties too. The designer's undo puts back only what was shown of the one property.
/// From this the control gets back all that it was then.
class EditHistory
{
public:
    /// A moment before or after an edit.
    struct Moment
    {
        int property;
        /// What the editor showed of it, and whether it counted as changed.
        QVariant shown;
        bool changed;
        SavedValues values;
        /// What was put to come here, which the designer may hold in another type than it is shown in.
        QVariant put = {};
    };

    /// Begins an edit that puts `value`, or a reset where it is invalid, while the control is `here`. What
    /// the control is to get where it goes back or forth: nothing for any other edit.
    std::optional<SavedValues> begin(Moment here, const QVariant& value);
    /// Ends it: what the setter by itself has made of the control, and what the control has.
    void end(SavedValues natural, SavedValues now);
    /// Tells whether the designer takes the property for changed. What an edit that only looked like an undo
    /// would have made of the control; nothing for all others.
    std::optional<SavedValues> confirm(int property, bool changed);
    /// The control has other values now, by the edit that has ended.
    void settle(SavedValues now) { m_now = std::move(now); }

private:
    /// An edit that put what was shown before: an undo, until the designer says otherwise.
    struct Doubt
    {
        int property;
        bool changed;
        SavedValues natural;
        std::vector<Moment> past;
    };

    std::vector<Moment> m_past;
    std::vector<Moment> m_future;
    SavedValues m_now;
    QVariant m_put;
    std::optional<Doubt> m_doubt;
};

} // namespace tavrin::designer
