#pragma once

#include <QString>
#include <QVector>
#include <cstddef>
#include <optional>

#include "link/device_records.h"

/// The fields of the shared records by the names that the code knows them by: what lets a person
/// read and change a record, and what documentation of the layout is checked against.
namespace record {

enum class Kind {
    Number,   // unsigned, 1, 2 or 4 bytes
    Text,     // UTF-8, filled up with zeros
    Address,  // IPv4
    Range,    // _byte4_time_se_
    Date,     // RecordDate
    Bytes,    // reserved
};

struct Field {
    const char* name;  // nested members joined with "."
    Kind kind;
    std::size_t offset;
    std::size_t size;
};

struct Description {
    const char* name;  // the C++ type
    std::size_t size;
    QVector<Field> fields;  // in order, without gaps
};

/// Every record whose fields are agreed with the controller.
const QVector<Description>& all();
/// The record of that type name; null if there is none.
const Description* find(const QString& name);
/// The field of that name; null if there is none.
const Field* findField(const Description& record, const QString& name);

/// The field's value in the record at @p data, in the form that setValue() takes.
QString value(const Field& field, const char* data);
/// Sets the field in the record at @p data. On a value that does not fit, returns why and leaves
/// the record as it was; empty on success.
QString setValue(const Field& field, char* data, const QString& value);

/// Reads "hh:mm~hh:mm".
std::optional<_byte4_time_se_> parseRange(const QString& text);

}  // namespace record
