// Tests that start copies of the test binary, each running one test case
// that is a child, and meet them at moments of the shared monotonic clock.
#ifndef KORVO_TESTUTIL_CHILDREN_H_
#define KORVO_TESTUTIL_CHILDREN_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "korvo/platform/env.h"

namespace korvo::test {

// The value given as `prefix` + value on the command line, or empty.
inline std::string ChildArgument(const std::string& prefix) {
  for (const std::string& arg : ::testing::internal::GetArgvs()) {
    if (arg.rfind(prefix, 0) == 0) return arg.substr(prefix.size());
  }
  return std::string();
}

// Sleeps until shortly before `moment` and spins for the rest, so that the
// children start within microseconds of each other.
inline void WaitUntil(int64_t moment) {
  while (ClockMs() < moment - 5) SleepMs(1);
  while (ClockMs() < moment) {
  }
}

// Runs the test cases `filter` in one child per entry of `args` at once, each
// with its arguments and its output in `out_dir`, and gives their exit codes.
inline std::vector<int> RunChildren(const std::string& filter, const std::vector<std::string>& args,
                                    const std::filesystem::path& out_dir) {
  const std::string self = ::testing::internal::GetArgvs().at(0);
  std::vector<int> results(args.size(), -1);
  std::vector<std::thread> children;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string out = (out_dir / ("child" + std::to_string(i) + ".out")).string();
    const std::string command =
        "\"" + self + "\" --gtest_filter=" + filter + " " + args[i] + " > \"" + out + "\"";
    children.emplace_back([&results, command, i] { results[i] = std::system(command.c_str()); });
  }
  for (std::thread& t : children) t.join();
  return results;
}

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_CHILDREN_H_
