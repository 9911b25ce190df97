#include "sim/common/console.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cstdio>
#include <memory>

#include "sim/common/line_buffer.h"

Console::Console() : open_(::fcntl(STDIN_FILENO, F_GETFD) >= 0) {}

void Console::read(const ControlPort::Executor& executor, QObject* context) const {
    if (!open_)
        return;
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, context);
    auto lines = std::make_shared<LineBuffer>();
    QObject::connect(notifier, &QSocketNotifier::activated, context, [notifier, lines, executor] {
        char bytes[4096];
        const ssize_t got = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (got <= 0) {
            notifier->setEnabled(false);
            return;
        }
        lines->feed(QByteArray(bytes, static_cast<int>(got)), [&executor](const QByteArray& line) {
            const QString answer = executor(QString::fromUtf8(line));
            if (!answer.isEmpty())
                std::puts(qUtf8Printable(answer));
            std::fflush(stdout);
        });
    });
}
