#include "designer/EditHistory.h"

#include "base/values/Variant.h"

#include <algorithm>
#include <utility>

namespace tavrin::designer {

bool sameValues(const SavedValues& a, const SavedValues& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameValue);
}

namespace {

/// Whether an edit of a property that puts this, or a reset, may be the one that led there.
bool leadsTo(const QVariant& value, const EditHistory::Moment& there, int property)
{
    return there.property == property && (there.put == value || (value.isValid() && there.shown == value));
}

} // namespace

std::optional<SavedValues> EditHistory::begin(Moment here, const QVariant& value)
{
    m_doubt.reset();
    here.put = std::exchange(m_put, value);
    if (!sameValues(here.values, m_now)) { // somebody else has put something
        m_past.clear();
        m_future.clear();
    }
    if (!m_future.empty() && leadsTo(value, m_future.back(), here.property)) {
        SavedValues values = std::move(m_future.back().values);
        m_future.pop_back();
        m_past.push_back(std::move(here));
        return values;
    }
    // The designer makes one edit of several that follow each other on one property.
    for (std::size_t i = m_past.size(); i > 0 && m_past[i - 1].property == here.property; --i) {
        if (!value.isValid() || m_past[i - 1].shown != value)
            continue;
        const Moment then = m_past[i - 1];
        m_doubt = {then.property, then.changed, {}, m_past};
        m_doubt->past.push_back(here);
        m_past.resize(i - 1);
        m_future.push_back(std::move(here));
        return then.values;
    }
    m_past.push_back(std::move(here));
    m_future.clear();
    return {};
}

void EditHistory::end(SavedValues natural, SavedValues now)
{
    if (m_doubt)
        m_doubt->natural = std::move(natural);
    m_now = std::move(now);
}

std::optional<SavedValues> EditHistory::confirm(int property, bool changed)
{
    std::optional<Doubt> doubt = std::exchange(m_doubt, {});
    if (!doubt || doubt->property != property || doubt->changed == changed)
        return {};
    m_past = std::move(doubt->past);
    m_future.clear();
    return std::move(doubt->natural);
}

} // namespace tavrin::designer
