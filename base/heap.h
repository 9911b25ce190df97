#pragma once

/// The memory that the process allocates.
namespace Heap {

/// Sees to it that large blocks, such as pictures of a whole screen, go back to the system as soon
/// as they are freed. The allocator would learn to keep room for them, and a terminal runs for
/// months. To be called before the first of them is allocated.
void giveBackLargeBlocks();
/// Gives back what lies unused between blocks in use. Takes about a millisecond.
void giveBackGaps();

}  // namespace Heap
