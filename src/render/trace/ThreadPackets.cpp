#include "render/trace/ThreadPackets.h"

namespace qv {

void ThreadPackets::Refill(RayPacket* first) {
  stack_.clear();
  stack_.reserve(kCount);
  for (std::size_t i = kCount; i-- > 0;) stack_.push_back(first + i);
}

RayPacket* ThreadPackets::Take() {
  RayPacket* packet = stack_.back();
  stack_.pop_back();
  return packet;
}

PacketPool::PacketPool(int threadCount)
    : block_(static_cast<std::size_t>(threadCount) * ThreadPackets::kCount) {}

void PacketPool::Refill(int thread, ThreadPackets& packets) {
  packets.Refill(block_.data() + static_cast<std::size_t>(thread) * ThreadPackets::kCount);
}

}  // namespace qv
