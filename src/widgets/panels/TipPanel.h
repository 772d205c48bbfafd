#pragma once

#include <QWidget>

namespace tavrin {

class Label;

/// A tip that lies over an empty list: a small picture, "Tip" in bold, and a sentence. Clicks fall through to
/// what lies below.
class TipPanel : public QWidget
{
    Q_OBJECT

public:
    explicit TipPanel(const QString& sentence, QWidget* parent = nullptr);

    QString Sentence() const;
    /// Shows it as what it lies over does while that is disabled. At first off.
    void SetFaded(bool faded);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Label* m_title;
    Label* m_sentence;
    bool m_faded = false;
};

} // namespace tavrin
