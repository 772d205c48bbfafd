#pragma once

#include "frame/host_contracts/Caches.h"
#include "frame/host_contracts/RemovableWord.h"
#include "host/database/Database.h"

namespace tavrin {

/// Rewrites a workstation's file of custom words from the database's list, whole or not at all, and under the
/// lock of those who append to it. Rows that are no words are left out. Raises an `Error` when the list
/// cannot be read or the file not be written; the file then stands as it was.
void writeCustomWords(Database& database, const QString& path);

/// Adds words to the database's list.
class CustomWordTable : public tvCustomDictionary, public RemovableWord
{
public:
    /// The database must outlive it.
    explicit CustomWordTable(Database& database);

    /// In normal form, see `CustomWords`; a word that the list holds already is no failure. Raises an `Error`
    /// when it is no word, or the database cannot take it.
    void AddWord(const QString& word) override;
    /// Takes the word out of the list again if the last `AddWord` has put it there.
    void TakeBack() override;

private:
    Database& m_database;
    QString m_added; // "" when the list held the word already
};

} // namespace tavrin
