#pragma once

/// Gives a forked process a network and a view of the file system that no other process sees
/// (support/ForkedProcess.h). Linux only.

#include <arpa/inet.h>
#include <linux/ipv6.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "support/MountNamespace.h"

namespace tarnwell::test {

/// Nothing but loopback is there. Throws where `enterMountNamespace` does.
inline void enterPrivateNetwork() {
  enterMountNamespace({}, CLONE_NEWNET);
  const int descriptor = ::socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  const bool isUp = ::ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
  ::close(descriptor);
  if (!isUp) {
    throw std::runtime_error("the loopback interface of the namespace cannot be raised");
  }
}

/// Gives loopback another IPv6 address, in the network that was entered.
inline void addLoopbackAddress(const char* address) {
  const int descriptor = ::socket(AF_INET6, SOCK_DGRAM, 0);
  in6_ifreq request{};
  ::inet_pton(AF_INET6, address, &request.ifr6_addr);
  request.ifr6_prefixlen = 128;
  request.ifr6_ifindex = static_cast<int>(::if_nametoindex("lo"));
  const bool isAdded = ::ioctl(descriptor, SIOCSIFADDR, &request) == 0;
  ::close(descriptor);
  if (!isAdded) {
    throw std::runtime_error(std::string("loopback does not take the address ") + address);
  }
}

}  // namespace tarnwell::test
