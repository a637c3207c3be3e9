// What makes the runs of one process comparable with one another.
#pragma once

namespace ei4::bench {

/// Keeps this thread on one of the processors that it may run on.
void stayOnOneProcessor();

/// Where blocks of memory come from. Left alone, the heap changes its mind by what was freed before, so that the order
/// of the contestants would count.
enum class Memory {
  kept,   ///< what is freed is used again, as where picture after picture is decoded
  fresh,  ///< each large block comes from the kernel and goes back, as where one picture is decoded
};

/// To be called before large blocks are allocated.
void takeMemory(Memory from);

}  // namespace ei4::bench
