// The command's log writer. Entries about things "(unknown)" are dropped: they say
// nothing to an administrator.
#pragma once

#include "Tool/VandrelleLog.h"

namespace vandrelle {

class VymLogIostream : public VandrelleLogIostream {
 public:
  using VandrelleLogIostream::VandrelleLogIostream;
  void log(int msg_type, int msg_level, const char* msg) override;
};

}  // namespace vandrelle
