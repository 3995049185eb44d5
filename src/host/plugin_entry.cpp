#include "host/plugin_entry.h"

#include "host/dispatch.h"

PF_Err PluginEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output,
                   void* extra) {
  return Nivra::Dispatch(cmd, in_data, out_data, params, output, extra);
}
