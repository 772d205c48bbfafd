#pragma once

#include "workbench/bindings/FieldBinding.h"

#include <QDateTime>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace tavrin::workbench {

/// A line of text.
class LineBinding : public FieldBinding
{
public:
    LineBinding(const QString& fieldName, const QString& label);

    QWidget* widget() const override;
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;

protected:
    /// The field's value as the line shows it, and back.
    virtual QString toLine(const QVariant& value) const;
    virtual QVariant fromLine(const QString& line) const;
    QString line() const;

private:
    QLineEdit* m_edit; // owned by its parent
};

/// A date with time, typed as the host shows dates.
class DateTimeBinding final : public LineBinding
{
public:
    DateTimeBinding(const QString& fieldName, const QString& label, const QString& dateFormat);

    QString problem() const override;
    /// As the line stands; invalid when it is empty or holds no date.
    QDateTime moment() const;

protected:
    QString toLine(const QVariant& value) const override;
    QVariant fromLine(const QString& line) const override;

private:
    QString m_format;
};

/// One of a few words. A word that is not among them stays, as long as the person leaves it.
class ChoiceBinding final : public FieldBinding
{
public:
    ChoiceBinding(const QString& fieldName, const QString& label, const QStringList& choices);

    QWidget* widget() const override;
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;

private:
    QStringList m_choices;
    QComboBox* m_combo; // owned by its parent
};

/// A long text.
class MemoBinding final : public FieldBinding
{
public:
    MemoBinding(const QString& fieldName, const QString& label);

    QWidget* widget() const override;
    void load(tvTableRow& row) override;
    bool differs(tvTableRow& row) const override;
    void store(tvTableRow& row) const override;
    QString problem() const override;

private:
    QPlainTextEdit* m_edit; // owned by its parent
    qint32 m_maxLength = 0;
};

} // namespace tavrin::workbench
