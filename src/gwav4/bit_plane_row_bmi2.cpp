// Row kernel for x86-64 processors with AVX2 and BMI2; only called where the processor has them.
#define EI4_DEPOSIT 1
#include "gwav4/bit_plane_row_body.h"

namespace zel::gwav4 {

extern const RowKernel kBmi2Rows;
const RowKernel kBmi2Rows = {readRow, store16, store32};

}  // namespace zel::gwav4
