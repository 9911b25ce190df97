#include "sim/controller/subject.h"

#include <utility>

QString Subject::done(const QString& text) {
    return text.isEmpty() ? QStringLiteral("ok") : QStringLiteral("ok ") + text;
}

QString Subject::failed(const QString& why) {
    return QStringLiteral("error ") + why;
}

void Subject::onRequest(quint16 code, RequestHandler handler) {
    requests_.append({code, std::move(handler)});
}

void Subject::onWord(const char* word, const char* usage, WordHandler handler) {
    words_.append({QString::fromLatin1(word), QString::fromLatin1(usage), std::move(handler)});
}
