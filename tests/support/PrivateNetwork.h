#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>

namespace quillmeter::test {

inline constexpr int forbidden = 77;  // exit status of a child that got no network of its own

inline void writeFile(const char* path, const std::string& text) {
  std::ofstream(path) << text;
}

// Moves this process into a network of its own, in which it is root.
inline bool enterPrivateNetwork() {
  const auto user = std::to_string(::geteuid());
  const auto group = std::to_string(::getegid());
  if (user == "0") return ::unshare(CLONE_NEWNET) == 0;
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", "0 " + user + " 1");
  writeFile("/proc/self/gid_map", "0 " + group + " 1");
  return true;
}

// Runs `body` in a child process with a network that holds nothing but a loopback interface that is down.
inline void inPrivateNetwork(const std::function<void()>& body) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (!enterPrivateNetwork()) ::_exit(forbidden);
    body();
    std::fflush(stdout);
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "the child ended by signal " << WTERMSIG(status);
  if (WEXITSTATUS(status) == forbidden) GTEST_SKIP() << "the kernel gives no private network namespace here";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "failed in the private network, see above";
}

// Runs `ip` (iproute2) with each of the lines as arguments.
inline void ip(std::initializer_list<std::string> lines) {
  for (const auto& line : lines) ASSERT_EQ(std::system(("ip " + line).c_str()), 0) << "ip " << line;
}

// wan0, connected to peer0, with an address and the default route.
inline void plugIn(const std::string& route = "default via 10.77.0.1 dev wan0 metric 100") {
  // Without addresses of IPv6 nothing but the test sends on it.
  ip({"link add wan0 type veth peer name peer0", "link set wan0 addrgenmode none", "link set peer0 addrgenmode none",
      "link set peer0 up", "link set wan0 up", "addr add 10.77.0.2/24 dev wan0",
      "neigh add 10.77.0.1 lladdr 02:00:00:00:00:01 dev wan0", "route add " + route});
}

}  // namespace quillmeter::test
