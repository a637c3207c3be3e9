#include "gwav4/debug_config.h"

namespace zel::gwav4 {

CDebugCfg theDbgConfig;

}  // namespace zel::gwav4
