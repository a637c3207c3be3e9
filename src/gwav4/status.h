// The codec's results and the reasons its readers throw: the only place where these numbers stand.
#pragma once

namespace zel::gwav4 {

// Results of IWaveletDecoder::readWavelet and IGWavDecompressor::decompress.
inline constexpr int kNotDecoded = -1;      ///< before the first decode
inline constexpr int kBufferTooSmall = -1;  ///< of decompress only; nothing was written
inline constexpr int kComplete = 0;         ///< every level and every bit that the stream holds
inline constexpr int kPartial = 4;          ///< a whole picture with detail missing
inline constexpr int kResumable = 8;    ///< as kPartial, and the caller means to go on with a longer stream
inline constexpr int kKilled = 16;      ///< kill() was called while the directory was read
inline constexpr int kBadStream = 128;  ///< foreign magic, or a value that no stream of this format can hold

// Thrown as int: a handler for int would not match an enumerator.
inline constexpr int kEndOfData = 3;          ///< a finite reader ran out of bits
inline constexpr int kUnsupportedOutput = 4;  ///< colour asked of the grey output path
inline constexpr int kChunkLimit = 7;         ///< the directory was read as far as its caller wanted

}  // namespace zel::gwav4
