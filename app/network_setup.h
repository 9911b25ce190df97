#pragma once

#include <QStringList>
#include <QVector>
#include <cstdint>

struct AddressBlock;

/// The machine's own address. GUI thread only.
namespace NetworkSetup {

/// What is wrong with an address block.
enum class Fault {
    None,
    Address,          ///< not one that a machine can have
    AddressZeroOnes,  ///< all zeros or all ones
    AddressReserved,  ///< the net's own, or its broadcast
    Mask,             ///< its ones do not all stand at the left, or it leaves no machine
    Gateway,          ///< not one that a machine can have
    GatewayOutside,   ///< of the net
    Dns,              ///< not one that a machine can have
};

/// The first fault of @p own, in the order of its fields. With DHCP its addresses do not matter;
/// gateway and DNS server may be missing (0.0.0.0).
Fault check(const AddressBlock& own);

/// The programs, each with its arguments, that give the machine the address of @p own, one after
/// the other; none when it has a fault. The DNS server is not among them, that is a file.
QVector<QStringList> commands(const AddressBlock& own);

/// Runs them, in the background, unless @p own is the address that the machine had by @p before:
/// setting it once more would cut every connection. Under a root other than "/" the machine is
/// somebody's own: what would be done is only logged.
void apply(const AddressBlock& own, const AddressBlock& before);

}  // namespace NetworkSetup
