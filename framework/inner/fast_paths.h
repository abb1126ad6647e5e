// The switch between the fast paths and the plain ones, which the build sets (COMMONGROUND_FAST_PATHS in CMake).
#pragma once

namespace zet::inner
{

// Whether this build takes a fast path where a plain one exists too. Both give the same bytes and the same results: the
// tests of a build without the fast ones show it. Such a build also lets a sanitizer see each copy and each block of
// memory.
#ifdef COMMONGROUND_WITHOUT_FAST_PATHS
inline constexpr bool kHasFastPaths = false;
#else
inline constexpr bool kHasFastPaths = true;
#endif

} // namespace zet::inner
