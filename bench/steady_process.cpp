#include "steady_process.h"

#include <malloc.h>
#include <sched.h>

namespace ei4::bench {

void stayOnOneProcessor() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) return;
  for (int i = CPU_SETSIZE - 1; i >= 0; --i) {  // the last one: interrupts mostly go to the first
    if (!CPU_ISSET(i, &allowed)) continue;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(i, &one);
    sched_setaffinity(0, sizeof one, &one);
    return;
  }
}

void takeMemory(Memory from) {
  if (from == Memory::kept) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);  // never give back
  } else {
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);  // the usual one, and said so it does not grow
  }
}

}  // namespace ei4::bench
