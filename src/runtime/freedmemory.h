#pragma once

namespace quorvale {

// Hands memory freed in bulk (a closed report's rows) back to the system.
// glibc keeps freed heap for reuse, so without this a process stays at its
// peak size after a large report is gone.
void returnFreedMemory();

} // namespace quorvale
