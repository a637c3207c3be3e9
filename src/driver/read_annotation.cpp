#include "driver/read_annotation.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>

#include "annotation/annotation_set.h"
#include "annotation/report_limits.h"
#include "container/file.h"

int ReadAnnotation(CAnnotationSet& set, const char* path, CSize sizeImg) {
  const File file = openRegularFile(path, "rb");
  if (!file) return 0;
  const auto size = measureFile(file.get());
  if (size <= 0 || size > ei4::kMostReportBytes) return 0;

  const auto length = static_cast<std::size_t>(size);
  const std::unique_ptr<char[]> text(new (std::nothrow) char[length + 1]);
  if (!text || std::fread(text.get(), 1, length, file.get()) != length) return 0;
  text[length] = '\0';
  return set.SetAnnotationSetReport(text.get(), sizeImg, 1);
}
