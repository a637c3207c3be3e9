#include "ei4info/json_report.h"

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "ei4info/text_report.h"

namespace ei4::info {

namespace {

using Json = nlohmann::ordered_json;

// The double that the float's shortest digits mean: 0.1 and not 0.10000000149011612. Null for what is no number.
Json number(float value) {
  if (!std::isfinite(value)) return nullptr;
  std::array<char, 64> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  double parsed = 0;
  std::from_chars(digits.data(), written.ptr, parsed);
  return parsed;
}

template <class T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json json(const Preamble& preamble) {
  return {{"bytes", preamble.length},
          {"intercept", number(preamble.intercept)},
          {"slope", number(preamble.slope)},
          {"window", number(preamble.window)},
          {"level", number(preamble.level)}};
}

Json json(const zel::gwav4::GWHeader& header) {
  return {{"magic", std::string(header.magic.data(), header.magic.size())},
          {"bytesPerPixel", header.bytesPerPixel},
          {"bitsPerPixel", header.bitsPerPixel},
          {"width", header.xSize},
          {"height", header.ySize}};
}

Json json(const ChunkSums& sums) { return {{"chunks", sums.chunks}, {"bits", sums.bits}}; }

Json json(const StreamDirectory& directory) {
  std::int64_t chunks = 0;
  std::int64_t bits = 0;
  Json orders = Json::array();
  for (const OrderSums& sums : directory.orders) {
    const std::int64_t bitsHere = sums.significance.bits + sums.refinement.bits;
    orders.push_back({{"plane", sums.plane},
                      {"order", sums.order},
                      {"bits", bitsHere},
                      {"significance", json(sums.significance)},
                      {"refinement", json(sums.refinement)}});
    chunks += sums.significance.chunks + sums.refinement.chunks;
    bits += bitsHere;
  }
  return {{"state", nameOf(directory.state)},
          {"chunks", chunks},
          {"bits", bits},
          {"codedBytes", directory.codedBytes},
          {"trailingBytes", directory.trailingBytes},
          {"orders", std::move(orders)}};
}

Json json(const ReadSize& size) {
  return {{"factor", size.factor},
          {"width", size.width},
          {"height", size.height},
          {"wantedFrom", size.wantedFrom},
          {"wantedTo", orNull(size.wantedTo)},
          {"readBudget", orNull(size.readBudget)},
          {"bytesRead", size.bytesRead},
          {"accepted", size.mayClaim}};
}

Json coding(const StreamDirectory& directory) {
  if (!directory.levels) return nullptr;
  return {{"levels", *directory.levels},
          {"topBit", *directory.top < 0 ? Json(nullptr) : Json(*directory.top)}};
}

}  // namespace

std::string jsonReport(std::string_view path, const ImageFacts& facts) {
  Json sizes = Json::array();
  for (const ReadSize& size : facts.sizes) sizes.push_back(json(size));
  const Json all = {{"file", path},
                    {"bytes", facts.length < 0 ? Json(nullptr) : Json(facts.length)},
                    {"decodes", nameOf(facts.decodes)},
                    {"faults", facts.faults},
                    {"preamble", facts.preamble ? json(*facts.preamble) : Json(nullptr)},
                    {"header", facts.header ? json(*facts.header) : Json(nullptr)},
                    {"coding", facts.directory ? coding(*facts.directory) : Json(nullptr)},
                    {"directory", facts.directory ? json(*facts.directory) : Json(nullptr)},
                    {"sizes", std::move(sizes)}};
  return all.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ei4::info
