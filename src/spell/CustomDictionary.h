#pragma once

#include <QSet>
#include <QString>

namespace tavrin {

/// The workstation's file of custom words: UTF-8, one word a line.
///
/// The file is open only while it is read or written, and is locked while it is written. Several programs of
/// the workstation may change it at once. Operations take words in normal form, see `CustomWords`, and raise
/// an `Error` that names the file.
class CustomDictionary
{
public:
    /// Reads the file; one that is missing has no words. A line that is no word is passed over; so are
    /// repeated words, a byte order mark and the ends of lines of other platforms. A binary file raises.
    explicit CustomDictionary(const QString& path);
    /// Reads the file again if it was changed since, by whomever. True when it did.
    bool refresh();

    const QString& path() const { return m_path; }
    const QSet<QString>& words() const { return m_words; }
    /// Whether it is one of the words, also with a capital letter at its front or wholly in capitals.
    bool knows(const QString& word) const;

    /// Appends the word unless the file holds it already, which is false. The file must be there. When it
    /// fails the file is as it was.
    bool add(const QString& word);
    /// Writes the file without the lines of this word; all others stay as they are.
    void remove(const QString& word);

private:
    /// What tells two states of a file apart.
    struct Stamp
    {
        quint64 device = 0;
        quint64 file = 0;
        qint64 size = -1;
        qint64 seconds = 0;
        qint64 nanoseconds = 0;

        static Stamp of(const QString& path);
        bool operator==(const Stamp&) const = default;
    };

    void read();
    void setWords(QSet<QString> words);

    QString m_path;
    Stamp m_stamp;
    QSet<QString> m_words;
    QSet<QString> m_capitals; // the words wholly in capitals
};

} // namespace tavrin
