// The platform at work: a registry, three services and who asks for them, as processes on this machine.
#pragma once

namespace arena
{

// Plays all steps and tells of each on the standard output; the last line says whether all was as it should be. Any
// step that fails ends it, and leaves no process behind.
bool runDemo();

} // namespace arena
