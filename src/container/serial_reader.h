// The byte source from which a compressed image is read, front to back.
#pragma once

/// A source of bytes with a length and a read position of its own that starts at 0.
class SerialReader {
 public:
  virtual ~SerialReader() = default;

  /// Total length in bytes; -1 when the source could not be opened.
  virtual int getLength() = 0;

  /// Reads up to `count` bytes at the read position to buffer[bufferOffset] and on; the buffer must have room
  /// for bufferOffset + count bytes. Returns the number of bytes read, less than `count` only at the end of
  /// the source (a `BlobReader` of two parts counts unevenly), or -1 when the source is not open.
  virtual int readBytes(unsigned char* buffer, int bufferOffset, int count) = 0;

  /// Moves the read position by `count` bytes. What it returns differs by class: see there.
  virtual int skipBytes(int count) = 0;

 protected:
  SerialReader() = default;
  SerialReader(const SerialReader&) = default;
  SerialReader& operator=(const SerialReader&) = default;
};
