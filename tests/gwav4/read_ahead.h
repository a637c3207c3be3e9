#pragma once

#include <cstddef>
#include <iterator>
#include <vector>

#include "gwav4/block_kernel.h"

namespace ei4::test {

/// Memory for what is read ahead of the significance streams of an order: no more than blocks of up to `count`
/// coefficients need.
class ReadAhead {
 public:
  ReadAhead(zel::gwav4::OrderCursors& order, std::size_t count)
      : m_Memory(std::size(order.runs), std::vector<unsigned char>(2 * zel::gwav4::bytesAhead(count))) {
    for (std::size_t i = 0; i < m_Memory.size(); ++i) {
      order.runs[i].ahead = m_Memory[i].data();
      order.runs[i].signsAt = m_Memory[i].size() / 2;
    }
  }

 private:
  std::vector<std::vector<unsigned char>> m_Memory;
};

}  // namespace ei4::test
