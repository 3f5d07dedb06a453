#pragma once

#include <benchmarks/model/ModelLine.h>

#include <cstdint>
#include <string>

// The runs of a tally that went wrong, each as it went.
template <typename Family, typename Tally, typename Run>
std::string FaultyRuns(const Family& family, uint64_t seed, const Tally& tally, Run run) {
  std::string text;
  for (const uint32_t fault : tally.faults) {
    kxmodel::Timeline timeline;
    Tally ignored;
    run(family, seed, fault, &timeline, ignored);
    text += "seed " + std::to_string(seed) + ", run " + std::to_string(fault) + ":\n" +
            timeline.Text() + '\n';
  }
  return text;
}
