#pragma once

namespace posix {

/// True in builds for the address or the thread sanitizer. Those reserve more address space than
/// any limit allows, and look for leaks by tracing the process from a copy of itself.
constexpr bool instrumentedBuild() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return true;
#else
    return false;
#endif
#else
    return false;
#endif
}

}  // namespace posix
