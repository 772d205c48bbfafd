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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Label* m_title;
    Label* m_sentence;
};

} // namespace tavrin
