#pragma once

#include "base/export/Export.h"
#include "base/lists/GridCombo.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <memory>

namespace tavrin::testing {

/// A grid combo without a face.
class TAVRIN_EXPORT FakeGridCombo final : public GridCombo
{
public:
    FakeGridCombo();
    ~FakeGridCombo() override;

    GridArray& Array() override;
    void ResetArray() override;
    void Rebind() override;
    QVariant Bookmark() const override;
    void SetBookmark(const QVariant& row) override;
    void SetText(const QString& text) override;
    /// "old text" at first.
    QString text() const;

    /// The values in column 2, row by row.
    QVariantList values() const;

    /// What was done to it, in order: "reset", "rebind 3" (the number of rows), "bookmark 2", "text "a"".
    QStringList log;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin::testing
