#include "image/paint_kernels.h"

#include "image/paint_kernels_body.h"

const PaintKernels& portablePaintKernels() { return kKernels; }

#if EI4_HAVE_AVX2_PAINT
extern const PaintKernels kAvx2PaintKernels;
const PaintKernels* avx2PaintKernels() {
  return __builtin_cpu_supports("avx2") ? &kAvx2PaintKernels : nullptr;
}
#else
const PaintKernels* avx2PaintKernels() { return nullptr; }
#endif

const PaintKernels& paintKernels() {
  static const PaintKernels* const special = avx2PaintKernels();
  return special != nullptr ? *special : kKernels;
}
