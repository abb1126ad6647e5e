// wirelens dissector: the script for Wireshark.
#include "tools/dissector/dissector_text.h"
#include "tools/wirelens/commands.h"

#include <iostream>

namespace wirelens
{

int dissector()
{
    std::cout << tools::dissectorText() << std::flush;
    return std::cout ? 0 : 1;
}

} // namespace wirelens
