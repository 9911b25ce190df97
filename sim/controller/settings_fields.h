#pragma once

#include <QString>
#include <QVector>
#include <cstddef>

#include "link/device_records.h"

/// The fields of the settings record by the names that the code knows them by, so that a person can
/// read and change them and the stored settings outlive a change of the record's layout.
namespace settings {

enum class Kind {
    Number,   // unsigned, 1, 2 or 4 bytes
    Text,     // UTF-8, filled up with zeros
    Address,  // IPv4
    Range,    // _byte4_time_se_
};

struct Field {
    const char* name;  // nested members joined with "."
    Kind kind;
    std::size_t offset;
    std::size_t size;
};

/// All fields but the reserved ones, in the record's order.
const QVector<Field>& fields();
/// The field of that name; null if there is none.
const Field* find(const QString& name);

/// What the field may hold, for people.
QString values(const Field& field);
/// The field's value, in the form that setValue() takes.
QString value(const Field& field, const _gui_menu_& menu);
/// Sets the field. On a value that does not fit, returns why and leaves the record as it was;
/// empty on success.
QString setValue(const Field& field, _gui_menu_& menu, const QString& value);

}  // namespace settings
