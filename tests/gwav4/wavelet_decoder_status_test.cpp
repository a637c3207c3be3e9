// How a read ends: its status, its limits, stop, kill; and the operations that follow it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "support/stream_reading.h"

namespace ei4::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using zel::gwav4::kBadStream;
using zel::gwav4::kComplete;
using zel::gwav4::kHeaderBytes;
using zel::gwav4::kKilled;
using zel::gwav4::kPartial;
using zel::gwav4::kResumable;
using zel::gwav4::kUnsupportedOutput;

TEST(ReadWaveletStatus, Is4WhenTheStreamEndsRightBehindThePreamble) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  Bytes stream = CodedStream(kSquare).preamble(5, 2).cut();
  EXPECT_EQ(readStream(decoder, stream), kPartial);
  EXPECT_THAT(coefficients(decoder), Each(0));
}

TEST(ReadWaveletStatus, Is4WhenTheStreamEndsInsideThePreamble) {
  for (const std::size_t kept : {0U, 1U}) {
    Bytes stream = CodedStream(kSquare).preamble(5, 2).cut();
    stream.resize(kHeaderBytes + kept);
    Decoder<short> decoder(1, 4, 4, 0, 4, 4);
    EXPECT_EQ(readStream(decoder, stream), kPartial);
    EXPECT_THAT(coefficients(decoder), Each(0));
  }
}

TEST(ReadWaveletStatus, Is4WhenAChunkGoesPastTheEnd) {
  Bytes stream = squareStream();
  stream.resize(stream.size() - 2);
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, stream), kPartial);
  EXPECT_EQ(coefficients(decoder)[0], 10);  // what arrived stands
}

TEST(ReadWaveletStatus, Is8InsteadOf4ForAResumableRead) {
  Decoder<short> cut(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(cut, lineStream().end(), 1, true), kResumable);
  Decoder<short> skipped(1, 2, 2, 1, 4, 4);
  EXPECT_EQ(readStream(skipped, squareStream(), 0, true), kResumable);
  Decoder<short> whole(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(whole, lineStream().end(), 0, true), kComplete);
}

TEST(ReadWaveletStatus, Is128ForAPlaneThatIsNotThere) {
  Decoder<short> one(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(one, CodedStream(kLine).preamble(3, 0).significance(2, 0, "").end()), kBadStream);
  EXPECT_EQ(readStream(one, CodedStream(kLine).preamble(3, 0).significance(1, 0, "").end()), kBadStream);
  Decoder<short> three(3, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(three, CodedStream(kLine).preamble(3, 0).significance(2, 0, "").end()), kComplete);
}

TEST(ReadWaveletStatus, Is128ForAnOrderAboveTheLevels) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, CodedStream(kSquare).preamble(3, 2).raw("00 1100 0").end()), kBadStream);
  EXPECT_EQ(readStream(decoder, CodedStream(kSquare).preamble(3, 8).raw("00 1001 0").end()), kBadStream);
}

TEST(ReadWaveletStatus, Is4WhenTheStreamEndsBeforeABadEntryIsComplete) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, CodedStream(kSquare).preamble(3, 0).raw("01 0000 0 0").cut()), kPartial);
}

TEST(ReadWaveletStatus, Is128ForMoreThan8Levels) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, CodedStream(kSquare).preamble(3, 9).end()), kBadStream);
  EXPECT_EQ(readStream(decoder, CodedStream(kSquare).preamble(3, 255).end()), kBadStream);
  Decoder<short> most(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(most, CodedStream(kSquare).preamble(3, 8).end()), kComplete);
}

TEST(ReadWaveletStatus, Is128ForATopThatTheCoefficientsDoNotHave) {
  const auto status = [](auto sample, int top) {
    Decoder<decltype(sample)> decoder(1, 4, 4, 0, 4, 4);
    return readStream(decoder, CodedStream(kSquare).preamble(top, 2).end());
  };
  EXPECT_EQ(status(short{}, 15), kComplete);
  EXPECT_EQ(status(short{}, 16), kBadStream);
  EXPECT_EQ(status(short{}, 254), kBadStream);
  EXPECT_EQ(status(int{}, 31), kComplete);
  EXPECT_EQ(status(int{}, 32), kBadStream);
}

TEST(ReadWaveletStatus, Is128ForAChunkBelowBit0) {
  const auto status = [](CodedStream stream) {
    Decoder<short> decoder(1, 3, 1, 0, 3, 1);
    return readStream(decoder, stream.end());
  };
  EXPECT_EQ(status(CodedStream(kLine).preamble(0, 0).significance(0, 0, "")), kComplete);
  EXPECT_EQ(status(CodedStream(kLine).preamble(0, 0).significance(0, 0, "").significance(0, 0, "")),
            kBadStream);
  EXPECT_EQ(status(CodedStream(kLine).preamble(0, 0).refinement(0, 0, "")), kBadStream);
}

TEST(ReadWaveletStatus, LeavesZerosWhenItIs128) {
  for (const Bytes& stream :
       {CodedStream(kLine).preamble(0, 0).significance(0, 0, "1 0").significance(0, 0, "").end(),
        CodedStream(kLine).preamble(0, 0).significance(0, 0, "1 0").refinement(0, 0, "").end(),
        CodedStream(kLine).preamble(0, 0).significance(0, 0, "1 0").significance(1, 0, "").end(),
        CodedStream(kLine).preamble(255, 0).significance(0, 0, "").end(),
        CodedStream(kLine).preamble(16, 0).significance(0, 0, "1 0").end(),
        CodedStream(kLine).preamble(0, 9).significance(0, 0, "1 0").end()}) {
    Decoder<short> decoder(1, 3, 1, 0, 3, 1);
    EXPECT_EQ(readStream(decoder, stream), kBadStream);
    EXPECT_THAT(coefficients(decoder), Each(0));
    Bytes out(3, 0xA5);
    decoder.untransformTo(out.data(), 1, 0);
    EXPECT_THAT(out, Each(0));
  }
}

TEST(ReadWaveletStatus, TakesATopOf255ForNoBitsAtAll) {
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, CodedStream(kLine).preamble(255, 0).end()), kComplete);
  EXPECT_THAT(coefficients(decoder), Each(0));
  EXPECT_EQ(readStream(decoder, CodedStream(kLine).preamble(255, 0).end()), kComplete);
  Decoder<short> withChunk(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(withChunk, CodedStream(kLine).preamble(255, 0).significance(0, 0, "").end()),
            kBadStream);
}

TEST(ReadWaveletStatus, Is4AndNothingIsReadWithFewerLevelsThanAreLeftOut) {
  Decoder<short> decoder(1, 1, 1, /*skip=*/2, 4, 4);
  const Bytes stream = CodedStream(kSquare).preamble(3, 1).significance(0, 1, "1 0").raw("10 0000 0").cut();
  EXPECT_EQ(readStream(decoder, stream), kPartial);  // not 128: the entry for plane 1 is never reached
  EXPECT_THAT(coefficients(decoder), Each(0));
}

TEST(ReadWaveletLimit, EndsTheDirectoryBehindThatManyChunks) {
  Decoder<short> one(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(one, lineStream().end(), 1), kPartial);
  EXPECT_THAT(coefficients(one), ElementsAre(0, 0, -10));
  Decoder<short> two(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(two, lineStream().end(), 2), kPartial);
  EXPECT_THAT(coefficients(two), ElementsAre(5, 0, -10));
  Decoder<short> all(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(all, lineStream().end(), 7), kPartial);  // the limit is met before the end code is
  EXPECT_THAT(coefficients(all), ElementsAre(5, 0, -9));
  Decoder<short> more(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(more, lineStream().end(), 8), kComplete);
}

TEST(ReadWaveletLimit, CountsAChunkBeforeItsDataIsPassed) {
  Bytes stream = lineStream(1).cut();
  stream.resize(stream.size() - 1);  // the data of the first chunk ends too early
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, stream, 1), kPartial);
}

TEST(ReadWaveletLimit, EndsTheScanBehindARowWhenItIsNegative) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, squareStream(), -1), kComplete);
  EXPECT_THAT(coefficients(decoder), ElementsAre(10, 2, 5, 2, 2, 2, 2, 2, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(ReadWaveletLimit, LeavesTheScanWholeForARowThatIsNotThere) {
  for (const int level : {-4, -1000, std::numeric_limits<int>::min()}) {
    Decoder<short> decoder(1, 4, 4, 0, 4, 4);
    EXPECT_EQ(readStream(decoder, squareStream(), level), kComplete);
    EXPECT_EQ(coefficients(decoder)[15], 2);
  }
}

TEST(ReadWaveletResume, GoesOnBehindTheRowWhereItEnded) {
  const Bytes stream = squareStream();
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  readStream(decoder, stream, -1);
  EXPECT_EQ(readStream(decoder, stream, -2), kComplete);
  EXPECT_EQ(coefficients(decoder)[8], 5);
  EXPECT_EQ(coefficients(decoder)[12], 0);
  EXPECT_EQ(readStream(decoder, stream), kComplete);
  Decoder<short> whole(1, 4, 4, 0, 4, 4);
  readStream(whole, stream);
  EXPECT_EQ(coefficients(decoder), coefficients(whole));
}

TEST(ReadWaveletResume, TakesALongerStreamAfterStatus8) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  const Bytes stream = squareStream();
  for (std::size_t bytes = kHeaderBytes; bytes < stream.size(); ++bytes) {
    ASSERT_EQ(readStream(decoder, Bytes(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(bytes)),
                         0, true),
              kResumable);
  }
  EXPECT_EQ(readStream(decoder, stream, 0, true), kComplete);
  Decoder<short> whole(1, 4, 4, 0, 4, 4);
  readStream(whole, stream);
  EXPECT_EQ(coefficients(decoder), coefficients(whole));
}

TEST(ReadWaveletResume, FinishesTheRowsOfACutDirectoryBeforeItReadsALongerOne) {
  const Bytes whole = squareStream();
  const Bytes cut(whole.begin(), whole.end() - 2);
  Decoder<short> atOnce(1, 4, 4, 0, 4, 4);
  readStream(atOnce, cut);

  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, cut, -1, true), kResumable);  // rows 0 and 1
  EXPECT_EQ(readStream(decoder, cut, -2, true), kResumable);  // row 2
  EXPECT_EQ(readStream(decoder, cut, -3, true), kResumable);  // row 3, the last one
  EXPECT_EQ(coefficients(decoder), coefficients(atOnce));

  EXPECT_EQ(readStream(decoder, whole, 0, true), kComplete);
  Decoder<short> complete(1, 4, 4, 0, 4, 4);
  readStream(complete, whole);
  EXPECT_EQ(coefficients(decoder), coefficients(complete));
}

TEST(ReadWaveletStop, EndsTheScanBehindTheRowAtHandAndCanGoOn) {
  const Bytes stream = squareStream();
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  decoder.stop();
  EXPECT_EQ(readStream(decoder, stream), kComplete);
  EXPECT_THAT(coefficients(decoder), ElementsAre(10, 2, 5, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(readStream(decoder, stream), kComplete);  // the flag was cleared
  EXPECT_THAT(coefficients(decoder), ElementsAre(10, 2, 5, 2, 2, 2, 2, 2, 5, 2, 5, 2, 2, 2, 2, 2));
}

TEST(ReadWaveletStop, LeavesWhatIsNotReadYetOutOfThePicture) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, squareStream()), kComplete);
  decoder.stop();
  Bytes out(16, 0xA5);
  decoder.convertAndCopyTo(out.data(), 1, 0, 1);
  EXPECT_THAT(out, Each(0));  // a picture nevertheless

  EXPECT_EQ(readStream(decoder, squareStream()), kComplete);  // goes on with what was left out
  decoder.convertAndCopyTo(out.data(), 1, 0, 1);
  EXPECT_THAT(out, ElementsAre(10, 2, 5, 2, 2, 2, 2, 2, 5, 2, 5, 2, 2, 2, 2, 2));
}

TEST(ReadWaveletKill, IsSeenAtARefinementChunk) {
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  decoder.kill();
  EXPECT_EQ(readStream(decoder, lineStream().end()), kKilled);
}

TEST(ReadWaveletKill, IsNotSeenInAStreamWithoutRefinement) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  decoder.kill();
  EXPECT_EQ(readStream(decoder, squareStream()), kComplete);
}

TEST(Untransform, InvertsTheLevelsOfTheStreamLessThoseLeftOut) {
  Decoder<short> decoder(1, 2, 2, 1, 4, 4);
  readStream(decoder, squareStream());
  decoder.untransform();
  // One level. The columns 10, 5 and 5, 5 become 10 - 3, 5 + 7 and 5 - 3, 5 + 2; then the rows likewise.
  EXPECT_THAT(coefficients(decoder), ElementsAre(7 - 1, 2 + 6, 12 - 4, 7 + 8));
}

TEST(Untransform, LeavesNothingToWriteOnceKilled) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  readStream(decoder, squareStream());
  decoder.kill();
  decoder.untransform();
  Bytes out(16, 0xA5);
  decoder.untransformTo(out.data(), 1, 0);
  EXPECT_THAT(out, Each(0xA5));
  decoder.convertAndCopyTo(out.data(), 1, 0, 1);
  decoder.convertAndCopyTo(out.data(), 1, 0, 2);
  EXPECT_THAT(out, Each(0xA5));
}

TEST(UntransformTo, WritesThePictureThatUntransformMakes) {
  Decoder<short> twoSteps(1, 4, 4, 0, 4, 4);
  readStream(twoSteps, squareStream());
  twoSteps.untransform();
  Bytes wanted(16);
  twoSteps.convertAndCopyTo(wanted.data(), 1, 0, 1);

  Decoder<short> oneStep(1, 4, 4, 0, 4, 4);
  readStream(oneStep, squareStream());
  Bytes out(16);
  oneStep.untransformTo(out.data(), 1, 0);
  EXPECT_EQ(out, wanted);
  EXPECT_NE(out, Bytes(16));
}

TEST(UntransformTo, RefusesColour) {
  Decoder<short> decoder(3, 3, 1, 0, 3, 1);
  Bytes out(9);
  try {
    decoder.untransformTo(out.data(), 3, 0);
    FAIL() << "no refusal";
  } catch (int reason) {
    EXPECT_EQ(reason, kUnsupportedOutput);
  }
}

TEST(ConvertAndCopyTo, WritesNoColourFromOnePlane) {
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  readStream(decoder, lineStream().end());
  Bytes out(9, 0xA5);
  decoder.convertAndCopyTo(out.data(), 3, 8, 1);
  EXPECT_THAT(out, Each(0xA5));
  decoder.convertAndCopyTo(out.data(), 3, 8, 2);
  EXPECT_THAT(out, Each(0xA5));
}

}  // namespace
}  // namespace ei4::test
