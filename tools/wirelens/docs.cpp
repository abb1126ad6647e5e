// wirelens docs: the protocol reference.
#include "tools/docs/page_text.h"
#include "tools/wirelens/commands.h"

#include <iostream>

namespace wirelens
{

int docs()
{
    std::cout << tools::pageText(WIRELENS_VERSION) << std::flush;
    return std::cout ? 0 : 1;
}

} // namespace wirelens
