#pragma once

#include <stdexcept>

namespace ei4::tools {

/// What the encoder was asked for cannot be written; what() says why, in words for the user.
class EncodeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A chunk is longer than its length field can say. Fewer levels, or GW41's wider fields, may help.
class ChunkTooLong : public EncodeError {
 public:
  using EncodeError::EncodeError;
};

}  // namespace ei4::tools
