#pragma once

#include <cstddef>
#include <vector>

#include "render/geometry/AlignedArray.h"
#include "render/trace/RayPacket.h"

namespace qv {

// One worker's stack of packets, so that nothing is allocated while rendering. Used by its own
// thread only.
class ThreadPackets {
 public:
  static constexpr std::size_t kCount = 1024;

  // Lends the packets that start at `first` (kCount of them).
  void Refill(RayPacket* first);

  RayPacket* Take();
  void GiveBack(RayPacket* packet) { stack_.push_back(packet); }

 private:
  std::vector<RayPacket*> stack_;
};

// A packet taken from a stack and given back at the end of the scope.
class PacketLease {
 public:
  explicit PacketLease(ThreadPackets& packets) : packets_(packets), packet_(packets.Take()) {}
  ~PacketLease() { packets_.GiveBack(packet_); }
  PacketLease(const PacketLease&) = delete;
  PacketLease& operator=(const PacketLease&) = delete;

  RayPacket& operator*() const { return *packet_; }
  RayPacket* operator->() const { return packet_; }

 private:
  ThreadPackets& packets_;
  RayPacket* packet_;
};

// The packets of all threads in one block, made once. Memory that no thread ever touches is not
// backed by the system.
class PacketPool {
 public:
  explicit PacketPool(int threadCount);
  void Refill(int thread, ThreadPackets& packets);

 private:
  AlignedArray<RayPacket> block_;
};

}  // namespace qv
