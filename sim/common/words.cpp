#include "sim/common/words.h"

#include <utility>

#include "sim/common/line_buffer.h"

QString WordSet::done(const QString& text) {
    return text.isEmpty() ? QStringLiteral("ok") : QStringLiteral("ok ") + text;
}

QString WordSet::failed(const QString& why) {
    return QStringLiteral("error ") + why;
}

void WordSet::onWord(const char* word, const char* usage, Handler handler) {
    words_.append({QString::fromLatin1(word), QString::fromLatin1(usage), std::move(handler)});
}

void WordTable::add(const WordSet& set) {
    for (const WordSet::Word& word : set.words()) {
        Q_ASSERT(!handlers_.contains(word.word));
        handlers_.insert(word.word, word.handler);
        help_ += word.word + QLatin1Char(' ') + word.usage + QLatin1Char('\n');
    }
}

QString WordTable::execute(const QString& line) const {
    if (line.size() > LineBuffer::kMaxLine)
        return WordSet::failed(QStringLiteral("the line is too long"));
    const QString text = line.trimmed();
    if (text.isEmpty())
        return {};
    const QString word = text.section(QLatin1Char(' '), 0, 0);
    if (word == QLatin1String("help"))
        return help_ + WordSet::done();
    const auto handler = handlers_.constFind(word);
    if (handler == handlers_.cend())
        return WordSet::failed(QStringLiteral("no such word, 'help' lists them"));
    return (*handler)(text.mid(word.size()).trimmed());
}
