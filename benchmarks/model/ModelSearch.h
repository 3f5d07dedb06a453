#pragma once

#include <benchmarks/model/ModelTalk.h>

#include <span>
#include <vector>

namespace kxmodel {

// A device whose speed is searched for, and how often and how soon it must be found.
struct SearchFamily {
  const char* name = "";
  DeviceTraits device = {};
  LineTraits line = {};
  bool usualSpeed = false;  // the device is at the port's present speed or a common one
  double found = 1;         // share, at least
  Seconds median = 30;      // at most
  Seconds longest = 30;
  double right = 1;  // share of the queries behind it that are answered
};

struct SearchTally {
  uint64_t runs = 0;
  uint64_t found = 0;
  uint64_t wrongSpeed = 0;
  uint64_t slipped = 0;          // answers behind it that were another's
  uint64_t right = 0;            // answers behind it
  std::vector<Seconds> times;    // of all searches
  std::vector<uint32_t> faults;  // the first few runs that went wrong, or found nothing

  // The time that so great a share of the searches stays below.
  Seconds TimeOf(double share);
};

std::span<const SearchFamily> SearchFamilies();

// A search on one line, and queries behind it.
void RunSearch(const SearchFamily& family, uint64_t seed, uint32_t run, Timeline* timeline,
               SearchTally& tally);

SearchTally RunSearches(const SearchFamily& family, uint64_t seed, uint32_t runs);

// Of each search.
constexpr uint64_t kQueriesBehindSearch = 5;

}  // namespace kxmodel
