// Painting kernels for x86-64 processors with AVX2; only called where the processor has it.
#include "image/paint_kernels_body.h"

extern const PaintKernels kAvx2PaintKernels;
const PaintKernels kAvx2PaintKernels = kKernels;
