#pragma once

#include "gwav4/aligned.h"

namespace zel::gwav4 {

/// What every source of bits and every coder over one answers about itself. The order of the operations is
/// part of the interface.
class CBitStreamer : public CAligned<8> {
 public:
  virtual ~CBitStreamer() = default;

  virtual const char* getType() const = 0;  ///< where the bits are kept, such as "buffer"
  virtual int getMode() const = 0;          ///< 'r' or 'w'
  virtual const char* getCode() const = 0;  ///< how they are coded: "raw" or "rleish"
  virtual long getTotal() const = 0;        ///< units consumed so far: bits of a reader, positions of a coder
  virtual long getStoredTotal() const = 0;  ///< bits consumed so far, or since the zeros began

 protected:
  CBitStreamer() = default;
  CBitStreamer(const CBitStreamer&) = default;
  CBitStreamer& operator=(const CBitStreamer&) = default;
};

/// Bits as they are, without a code.
class CBitRawStreamer : public CBitStreamer {
 public:
  const char* getCode() const override { return "raw"; }
};

/// Names the stretch of the stream that a reader or coder serves; all -1 when it serves none.
struct ChunkId {
  int plane = -1;
  int order = -1;
  int position = -1;  ///< bit position
};

}  // namespace zel::gwav4
