// Whether the images of a container are such as the converter takes.
#pragma once

#include <string>

#include "erblb/container_check.h"

namespace ei4::erblb {

/// Looks at each entry called ".ei4": preamble, stream header and directory. "img.f.ei4" of a container "full.erblb" is
/// read behind "img.t.ei4" of an "initial.erblb" beside it, where there is one; elsewhere it is passed over with a note.
/// "img.t.ei4" may end early. Returns the number of images.
/// path   of the container, which `container` has been run on and is not refused.
/// Images that together hold much more than the containers (see claimsTooMuch) are one fault and not looked at.
std::int64_t checkImages(const std::string& path, const ContainerCheck& container,
                         const ContainerCheck::Tell& tell, tools::Progress& progress);

}  // namespace ei4::erblb
