-- The words that people have added to the spelling dictionary, for all workstations. The key lets a word that two
-- of them add at the same time stand once.
CREATE TABLE custom_word (
    word TEXT NOT NULL PRIMARY KEY
);
