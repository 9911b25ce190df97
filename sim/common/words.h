#pragma once

#include <QHash>
#include <QString>
#include <QVector>
#include <functional>

/// Something that words drive. Its constructor says which ones; a WordTable finds them.
class WordSet {
 public:
    /// Gets what follows the word, without blanks around it, and returns the answer: done(),
    /// done(text) or failed(text), possibly behind further lines.
    using Handler = std::function<QString(const QString& arguments)>;
    /// Gives lines for people, each with its end.
    using Details = std::function<QString()>;

    struct Word {
        QString word;
        QString usage;  // for people: arguments and effect
        Handler handler;
        Details details;  // what `help` tells of this word besides; may be empty
    };

    const QVector<Word>& words() const { return words_; }

    /// The last line of every answer begins with "ok" or "error".
    static QString done(const QString& text = {});
    static QString failed(const QString& why);

 protected:
    WordSet() = default;
    ~WordSet() = default;

    void onWord(const char* word, const char* usage, Handler handler, Details details = {});

 private:
    QVector<Word> words_;
};

/// Carries lines of words out. The word `help` is its own.
class WordTable {
 public:
    /// Takes the words of @p set, which has to outlive the table. No two sets share a word.
    void add(const WordSet& set);

    /// Carries out one line and returns the answer, without a line end. Nothing for an empty line.
    QString execute(const QString& line) const;

 private:
    QString help(const QString& word) const;

    QHash<QString, WordSet::Word> words_;
    QString help_;
};
