// Memory for large pictures that costs one page fault for every 2 MiB instead of one for every 4 KiB, where
// the kernel can do so: the first touch of small pages takes longer than painting the picture.
#pragma once

#include <cstddef>

#include "types/types.h"

namespace ei4 {

/// Prepares the heap for a job on a picture of `size` pixels that also needs `more` bytes. What is freed from
/// then on is used again instead of being given back. For all but small jobs what is allocated, by the
/// libraries as well, comes from one stretch that the kernel is asked to back with huge pages. To be called
/// before the picture's own memory is allocated.
///
/// Only a hint: impossible and negative sizes are ignored, nothing is touched, nothing fails. Changes malloc's
/// settings for the whole process. Does nothing in an address space that is limited (RLIMIT_AS).
void prepareHeap(CSize size, std::size_t more);

}  // namespace ei4
