// Owners for what MagickCore lends. Private to this folder.
#pragma once

#include <magick/MagickCore.h>

#include <memory>

namespace ei4 {

struct DestroyMagick {
  void operator()(ExceptionInfo* exception) const noexcept { DestroyExceptionInfo(exception); }
  void operator()(DrawInfo* info) const noexcept { DestroyDrawInfo(info); }
  void operator()(Image* image) const noexcept { DestroyImage(image); }
};
using OwnedException = std::unique_ptr<ExceptionInfo, DestroyMagick>;
using OwnedDrawInfo = std::unique_ptr<DrawInfo, DestroyMagick>;
using OwnedImage = std::unique_ptr<Image, DestroyMagick>;

/// Lends memory of ours to a member that MagickCore would free, and takes it back.
class Lent {
 public:
  Lent(char*& member, char* text) : m_member(member) { m_member = text; }
  ~Lent() { m_member = nullptr; }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

 private:
  char*& m_member;
};

}  // namespace ei4
