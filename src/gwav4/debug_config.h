#pragma once

#include <memory>

namespace zel::gwav4 {

/// Storage for debug settings of the codec, freed at exit. Nothing fills or reads it in a normal run.
struct CDebugCfg {
  std::unique_ptr<int[]> values;
};

extern CDebugCfg theDbgConfig;

}  // namespace zel::gwav4
