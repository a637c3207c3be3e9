// What becomes of a run when MagickCore cannot get the memory for its own small needs.
#pragma once

namespace ei4 {

/// Has the process end then, with status 1 after an empty line on standard output, until told otherwise below. Left
/// alone the library would end it with statuses of its own, wait for a lock that it holds itself, or call itself until
/// the stack is full. To be called before MagickCoreGenesis, once.
///
/// Large blocks are left out: the library can do without them, or says that it cannot. So is what the library gets
/// from elsewhere: for the memory of a lock it can still wait for ever, and other libraries end as they do.
void endRunWhenLibraryFails();

/// The process is to end with `status` instead, after the empty line or without it.
void setEndAfterLibraryFailure(int status, bool emptyLine);

}  // namespace ei4
