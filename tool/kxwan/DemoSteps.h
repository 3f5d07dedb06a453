#pragma once

#include <profile/Profile.h>
#include <tool/kxwan/Device.h>
#include <tool/kxwan/Observe.h>
#include <tool/kxwan/Port.h>

#include <string>

namespace kxtool {

// One simulated device on its way through the demonstration.
struct Demonstration {
  Port port;
  kxsim::Profile profile = {};  // what it is, and in its expectation what must come of each step
  Identity identity = {};
  kxsim::Expectation seen = {};
  Observation observed = {seen};
};

// What a step found, and what is wrong with that; nothing when it is as it should be.
struct StepOutcome {
  std::string found;
  std::string fault;
};

struct Step {
  const char* name;
  const char* waiting;  // shown while it takes its time
  bool (*applies)(const Demonstration& demonstration);
  StepOutcome (*run)(Demonstration& demonstration);
};

constexpr int kStepCount = 11;
extern const Step kSteps[kStepCount];

}  // namespace kxtool
