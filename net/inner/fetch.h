// Loading an object into the processor's cache before it is used.
#pragma once

namespace zet::inner
{

// Of many connections, the next one is mostly not in the cache: it is loaded while another one has its turn. The object
// may be gone, or shorter than those lines.
template <int Lines>
void fetch(const void* object)
{
    constexpr int kLine = 64;
    for (int i = 0; i < Lines; ++i)
        __builtin_prefetch(static_cast<const char*>(object) + i * kLine);
}

} // namespace zet::inner
