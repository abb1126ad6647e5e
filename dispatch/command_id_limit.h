// The size of the id space.
#pragma once

// Ids run from 0 to one below this; the analysers hold one entry for each.
inline constexpr int kCommandIdLimit = 0x4019;
