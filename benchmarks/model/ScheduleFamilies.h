#pragma once

#include <benchmarks/model/ModelHost.h>

#include <span>

namespace kxmodel {

// Kinds of devices and hosts, and what may come of a dialogue between them.
std::span<const Family> ScheduleFamilies();

const Family* FindFamily(std::string_view name);

// The device answers every command once, in order, however late.
bool AnswersAll(const Family& family);

}  // namespace kxmodel
