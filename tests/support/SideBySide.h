#pragma once

#include <gtest/gtest.h>

#include <thread>
#include <vector>

// Tests each row of a table, by its name, in a thread of its own: for tests that mostly wait.
template <typename Rows, typename Test>
void SideBySide(const Rows& rows, Test test) {
  std::vector<std::thread> threads;
  for (const auto& row : rows) {
    threads.emplace_back([&row, &test] {
      SCOPED_TRACE(row.name);
      test(row);
    });
  }
  for (std::thread& thread : threads) thread.join();
}
