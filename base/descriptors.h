#pragma once

/// How many files and connections the process may have open at once.
namespace Descriptors {

/// Raises the limit as far as the system allows. To be called before the first thread.
void raiseLimit();

/// The limit in force.
int limit();

}  // namespace Descriptors
