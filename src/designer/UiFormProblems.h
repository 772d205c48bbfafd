#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

/// Notes what is wrong with a form, a sentence each, with the file before it.
class UiFormProblems
{
public:
    UiFormProblems(const QString& fileName, QStringList& texts)
        : m_fileName(fileName)
        , m_texts(texts)
    {
    }
    void add(const QString& problem)
    {
        m_texts << m_fileName + QStringLiteral(": ") + problem +
                       (problem.endsWith(u'.') ? QString() : QStringLiteral("."));
    }
    void addOfControl(const QString& name, const QString& problem)
    {
        add(QStringLiteral("control \"%1\": ").arg(name) + problem);
    }
    void addOfWidget(const QString& name, const QString& problem)
    {
        add(QStringLiteral("widget \"%1\": ").arg(name) + problem);
    }

private:
    QString m_fileName;
    QStringList& m_texts;
};

} // namespace tavrin
