#pragma once

#include <QWidget>

namespace tavrin {

/// The sign of how far a file is, in the colours of the theme: "file", a sheet of paper, at first; "success",
/// a tick; "error", a cross.
class UploadIcon : public QWidget
{
    Q_OBJECT

public:
    explicit UploadIcon(QWidget* parent = nullptr);

    QString Key() const { return m_key; }
    /// Raises an `Error` for a key that has no sign.
    void SetKey(const QString& key);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_key;
};

} // namespace tavrin
