#pragma once

#include <memory>
#include <string>

#include "container/FileBlob.h"
#include "container/serial_reader.h"

/// Reads one image out of the containers "full.erblb" and "initial.erblb" of a folder. For dir/img.ei4 that
/// is
///   1. the entry img.ei4 of dir/full.erblb, or without it
///   2. the entry img.t.ei4 of dir/initial.erblb followed by img.f.ei4 of dir/full.erblb, or
///   3. img.f.ei4 alone when the initial part is missing or empty.
/// Owns its containers and keeps their files open. Not copyable.
class BlobReader final : public SerialReader {
 public:
  /// Locates the entry. The length stays -1 for a null path, one without '/', and a full container that
  /// cannot be parsed; it is 0 when there is no such entry. Containers report their own faults on stderr.
  explicit BlobReader(const char* path);
  ~BlobReader() override;

  /// Bytes of the entry or of both parts; -1 also when both together have more than 2^31 - 1.
  int getLength() override { return length; }

  /// As in `SerialReader`; -1 also for a negative offset or a null buffer. With two parts the results are
  /// uneven: a read that crosses into the full part returns the true total but counts the initial bytes twice
  /// in the position, so only a read to the end may cross (Quirk crossing-counts-twice); a read within the
  /// full part returns one less than it delivered and moves by as much (Quirk full-part-one-less).
  int readBytes(unsigned char* buffer, int bufferOffset, int count) override;

  /// Returns `count`; -1, with the position unchanged, when nothing was located or the new position would lie
  /// outside 0..length.
  int skipBytes(int count) override;

 private:
  void locate(const std::string& folder, const std::string& name);
  int readTwoParts(unsigned char* buffer, int bufferOffset, int count);
  void advance(int bytes);

  int length = -1;
  int initialLength = -1;
  std::unique_ptr<FileBlob> fullBlob;
  std::unique_ptr<FileBlob> initialBlob;  // declared behind fullBlob, so destroyed before it
  const BlobEntry* fullEntry = nullptr;
  const BlobEntry* initialEntry = nullptr;
  bool twoPart = false;
  int position = 0;
};
