#pragma once

#include <QStringList>

struct AddressBlock;

/// The machine's own address.
namespace NetworkSetup {

/// The shell commands that give the machine the address of @p own; none when it makes no sense
/// (an address of 0 without DHCP, a mask with holes).
QStringList commands(const AddressBlock& own);

/// Runs them, in the background, unless @p own is the address that the machine had by @p before:
/// setting it once more would cut every connection. Under a root other than "/" the machine is
/// somebody's own: what would be done is only logged.
void apply(const AddressBlock& own, const AddressBlock& before);

}  // namespace NetworkSetup
