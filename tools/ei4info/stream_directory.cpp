#include "ei4info/stream_directory.h"

#include <array>

#include "gwav4/decoder_state.h"
#include "gwav4/directory.h"
#include "gwav4/status.h"

namespace ei4::info {

namespace {

using zel::gwav4::CBitReader;
using zel::gwav4::DirectoryEntry;
using zel::gwav4::kOrders;
using zel::gwav4::kPlanes;

constexpr int kMostPositions = zel::gwav4::kBitPositions<int>;
using Sums = std::array<std::array<OrderSums, kOrders>, kPlanes>;

std::string placeOf(const DirectoryEntry& entry) {
  return "plane " + std::to_string(entry.plane) + ", order " + std::to_string(entry.order);
}

class Walk {
 public:
  Walk(const zel::gwav4::GWHeader& header, std::span<const unsigned char> coded)
      : m_reader(coded.data(), coded.size()),
        m_planes(header.bytesPerPixel == 3 ? 3 : 1),
        m_isGw40(versionOf(header) == zel::gwav4::Version::gw40),
        m_lengthBits(zel::gwav4::lengthFieldWidth(header.xSize, header.ySize, m_isGw40)) {
    m_found.codedBytes = static_cast<std::int64_t>(coded.size());
  }

  StreamDirectory found() {
    try {
      if (readPreamble()) {
        while (readEntry()) {
        }
      }
    } catch (int reason) {
      if (reason != zel::gwav4::kEndOfData) throw;
      if (m_found.state == DirectoryState::cut && m_found.fault.empty())
        m_found.fault = "the data ends within the directory";
    }
    for (const auto& plane : m_sums) {
      for (const OrderSums& order : plane) {
        if (order.significance.chunks + order.refinement.chunks > 0) m_found.orders.push_back(order);
      }
    }
    return std::move(m_found);
  }

 private:
  bool bad(std::string fault) {
    m_found.state = DirectoryState::bad;
    m_found.fault = std::move(fault);
    return false;
  }

  bool readPreamble() {
    const int top = static_cast<int>(m_reader.takeBits(8));
    m_found.top = top == zel::gwav4::kNoTopPosition ? -1 : top;
    m_found.levels = static_cast<int>(m_reader.takeBits(8));
    if (*m_found.levels > zel::gwav4::kMaxLevels)
      return bad("states " + std::to_string(*m_found.levels) + " levels; there are at most 8");
    if (*m_found.top >= kMostPositions)
      return bad("states a top bit of " + std::to_string(top) + "; the highest is 31");
    return true;
  }

  std::uint64_t bitsLeft() const {
    const CBitReader::Window window = m_reader.window();
    return window.bitCount - window.position;
  }

  // False at the directory's end. Throws kEndOfData at that of the data.
  bool readEntry() {
    // Fewer bits than a byte has are what fills the last one up.
    m_found.state = bitsLeft() < 8 ? DirectoryState::open : DirectoryState::cut;
    const DirectoryEntry entry = takeDirectoryEntry(m_reader, m_lengthBits, m_isGw40);
    if (entry.plane == zel::gwav4::kEndOfDirectory) {
      m_found.state = DirectoryState::complete;
      m_found.trailingBytes = static_cast<std::int64_t>(bitsLeft() / 8);
      return false;
    }
    if (entry.plane >= m_planes || entry.order > *m_found.levels)
      return bad("has a chunk of " + placeOf(entry) + ", which the image does not have");

    OrderSums& sums = m_sums[static_cast<std::size_t>(entry.plane)][static_cast<std::size_t>(entry.order)];
    sums.plane = entry.plane;
    sums.order = entry.order;
    ChunkSums& kind = entry.refinement ? sums.refinement : sums.significance;
    // The first significance chunk has the position `top`, the first refinement chunk the next lower one.
    const int positions = *m_found.top + (entry.refinement ? 0 : 1);
    if (kind.chunks >= positions) return bad("has more chunks than bit positions at " + placeOf(entry));

    ++kind.chunks;
    const std::uint64_t left = bitsLeft();
    if (entry.length > left) {
      kind.bits += static_cast<std::int64_t>(left);
      m_found.state = DirectoryState::cut;
      m_found.fault = "the data ends within a chunk of " + placeOf(entry) + ": " + std::to_string(left) +
                      " of " + std::to_string(entry.length) + " bits";
      return false;
    }
    kind.bits += static_cast<std::int64_t>(entry.length);
    m_reader.skipBits(entry.length);
    return true;
  }

  StreamDirectory m_found;
  Sums m_sums{};
  CBitReader m_reader;
  int m_planes;
  bool m_isGw40;
  int m_lengthBits;
};

}  // namespace

StreamDirectory walkDirectory(const zel::gwav4::GWHeader& header, std::span<const unsigned char> coded) {
  return Walk(header, coded).found();
}

}  // namespace ei4::info
