#include "sim/common/words.h"

#include <utility>

#include "sim/common/line_buffer.h"

QString WordSet::done(const QString& text) {
    return text.isEmpty() ? QStringLiteral("ok") : QStringLiteral("ok ") + text;
}

QString WordSet::failed(const QString& why) {
    return QStringLiteral("error ") + why;
}

void WordSet::onWord(const char* word, const char* usage, Handler handler, Details details) {
    words_.append({QString::fromLatin1(word), QString::fromLatin1(usage), std::move(handler),
                   std::move(details)});
}

void WordTable::add(const WordSet& set) {
    for (const WordSet::Word& word : set.words()) {
        Q_ASSERT(!words_.contains(word.word));
        words_.insert(word.word, word);
        help_ += word.word + QLatin1Char(' ') + word.usage + QLatin1Char('\n');
    }
}

QString WordTable::help(const QString& word) const {
    if (word.isEmpty())
        return help_ + WordSet::done();
    const auto found = words_.constFind(word);
    if (found == words_.cend())
        return WordSet::failed(QStringLiteral("no such word, 'help' lists them"));
    return found->word + QLatin1Char(' ') + found->usage + QLatin1Char('\n') +
           (found->details ? found->details() : QString()) + WordSet::done();
}

QString WordTable::execute(const QString& line) const {
    if (line.size() > LineBuffer::kMaxLine)
        return WordSet::failed(QStringLiteral("the line is too long"));
    const QString text = line.trimmed();
    if (text.isEmpty())
        return {};
    const QString word = text.section(QLatin1Char(' '), 0, 0);
    const QString arguments = text.mid(word.size()).trimmed();
    if (word == QLatin1String("help"))
        return help(arguments);
    const auto found = words_.constFind(word);
    if (found == words_.cend())
        return WordSet::failed(QStringLiteral("no such word, 'help' lists them"));
    return found->handler(arguments);
}
