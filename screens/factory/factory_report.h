#pragma once

#include <QJsonArray>
#include <QString>

class WindowShell;

/// The file in which the results of all factory tests are left, for whoever collects them from the
/// line; docs/factory-report.schema.json says what is in it. GUI thread only.
namespace FactoryReport {

/// Writes it anew, with what the terminal is besides @p tests. It is there whole or as it was
/// before, also after a power cut. False when the disk does not take it.
bool write(const WindowShell& shell, const QJsonArray& tests);

}  // namespace FactoryReport
