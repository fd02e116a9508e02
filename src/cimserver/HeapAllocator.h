// What the process's memory allocator has handed out, whichever allocator it is: jemalloc when
// the server is linked with it or it is preloaded, the C library's otherwise (as under the
// sanitizers, which bring their own).
#ifndef KSV_CIMSERVER_HEAPALLOCATOR_H
#define KSV_CIMSERVER_HEAPALLOCATOR_H

#include <cstddef>

namespace ksv::server::heap {

// Bytes the allocator has handed out and not yet had back.
std::size_t bytesInUse();

// Gives the pages the allocator holds free back to the system.
void returnFreePages();

} // namespace ksv::server::heap

#endif
