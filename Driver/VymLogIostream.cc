#include "Driver/VymLogIostream.h"

#include <cstring>

namespace vandrelle {

void VymLogIostream::log(int msg_type, int msg_level, const char* msg) {
  if (std::strstr(msg, "(unknown)") != nullptr) return;
  VandrelleLogIostream::log(msg_type, msg_level, msg);
}

}  // namespace vandrelle
