#pragma once

#include <QLabel>

class QTextLayout;

namespace tavrin {

/// Plain text that is wrapped at the label's width and is always as high as it needs. A word that is longer
/// than a line, as paths are, is broken; nothing of the text is ever cut.
class WrapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit WrapLabel(QWidget* parent = nullptr);

    QString Caption() const { return text(); }
    void SetCaption(const QString& caption);

    bool hasHeightForWidth() const override { return true; }
    /// An empty text is as high as a line.
    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();
    int heightAt(int width) const;
    qreal layOut(QTextLayout& layout, int width) const;
};

} // namespace tavrin
