#pragma once

namespace kxwan {

// How one maker's devices want their packet-data context.
struct GprsProfile {
  const char* manufacturer = "";  // occurs in the AT+GMI answer; "" fits any
  const char* model = "";         // occurs in the AT+GMM answer; "" fits any
  int contextId = 3;
  bool sendNwhfun = false;  // AT+NWHFUN=0 instead of a quality-of-service command
  bool qosByEdge = false;   // short quality-of-service form, 2G or 3G by the EDGE bit
  bool skipQos = false;     // no quality-of-service command
};

const GprsProfile& FindGprsProfile(const char* manufacturer, const char* model);

}  // namespace kxwan
