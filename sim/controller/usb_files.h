#pragma once

#include <QByteArray>
#include <QVector>
#include <cstring>
#include <optional>

/// The form of what the simulated controller exports: sections, one behind the other, each a tag,
/// the number of its records and the records as they travel on the device link.
namespace usb_files {

enum Tag : quint32 {
    Settings = 0x5445535A,  // "ZSET", one _gui_menu_
    Users = 0x5253555A,     // "ZUSR", _gui_user_
    Logs = 0x474F4C5A,      // "ZLOG", GUI_LOGDATA
};

/// Nothing larger is read.
constexpr qint64 kMaxFile = 64 * 1024 * 1024;

template <typename Record>
QByteArray section(Tag tag, const QVector<Record>& records) {
    const quint32 head[] = {tag, static_cast<quint32>(records.size())};
    QByteArray bytes(reinterpret_cast<const char*>(head), sizeof head);
    for (const Record& record : records)
        bytes.append(reinterpret_cast<const char*>(&record), sizeof record);
    return bytes;
}

/// The records of the section @p tag and what is left behind it; nothing when @p file does not
/// begin with such a section, or with a shorter one than it says.
template <typename Record>
std::optional<QVector<Record>> take(Tag tag, QByteArray& file) {
    quint32 head[2];
    if (file.size() < static_cast<int>(sizeof head))
        return {};
    std::memcpy(head, file.constData(), sizeof head);
    const QByteArray body = file.mid(sizeof head);
    if (head[0] != tag || head[1] > body.size() / sizeof(Record))
        return {};
    QVector<Record> records(static_cast<int>(head[1]));
    const int size = records.size() * static_cast<int>(sizeof(Record));
    std::memcpy(records.data(), body.constData(), static_cast<std::size_t>(size));
    file = body.mid(size);
    return records;
}

}  // namespace usb_files
