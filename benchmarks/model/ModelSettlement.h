#pragma once

#include <benchmarks/model/ModelTalk.h>

#include <span>
#include <vector>

namespace kxmodel {

// A device that brings a line in doubt, and how often and how soon a command that must go once can
// be sent there all the same.
struct SettleFamily {
  const char* name = "";
  DeviceTraits device = {};
  Range waits = {0, 0};  // the host, before it sends the command
  Seconds budget = 3;
  bool surely = false;  // the whole time of the command is its budget, and a slow answer is closed
  double settled = 0;   // share of the lines in doubt, at least
  Seconds median = 20;  // until the command goes, at most
};

struct SettleTally {
  uint64_t lines = 0;  // that were in doubt
  uint64_t settled = 0;
  uint64_t wrong = 0;    // results of the command that were another's
  uint64_t slipped = 0;  // results of commands that went once behind it that were another's
  uint64_t queries = 0;  // behind a line that was not settled
  uint64_t queriesWrong = 0;
  uint64_t sentInDoubt = 0;  // the command went although answers to others were to come
  uint64_t sentTwice = 0;
  std::vector<Seconds> times;    // until the command went
  std::vector<uint32_t> faults;  // the first few

  Seconds Median();
};

std::span<const SettleFamily> SettleFamilies();

// One line: queries until it is in doubt, a command once, and queries again.
void RunSettlement(const SettleFamily& family, uint64_t seed, uint32_t run, Timeline* timeline,
                   SettleTally& tally);

SettleTally RunSettlements(const SettleFamily& family, uint64_t seed, uint32_t runs);

}  // namespace kxmodel
