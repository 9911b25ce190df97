#pragma once

#include <QString>
#include <QStringList>

/// Folders of symbolic links, as the terminal keeps for its pictures and fonts. Links are made
/// directly, without a shell. How it ends is deliberately not told: where a folder cannot be
/// written there are no links. Any thread.
namespace FolderLinks {

/// The paths of what lies in @p folder, hidden files aside, by name.
QStringList entries(const QString& folder);

/// Leaves @p folder with a link to each of @p targets, named like it, and without any other file,
/// as removing all and linking anew would. What is right already is not touched: the flash is
/// spared, and there is no moment without links. Folders and hidden files in @p folder stay, and a
/// name that one of these has gets no link.
void replace(const QString& folder, const QStringList& targets);

/// Links @p target into @p folder unless there is something of that name.
void add(const QString& folder, const QString& target);

}  // namespace FolderLinks
