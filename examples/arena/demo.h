// Runs the platform: a registry, three services and clients, as processes on this machine.
#pragma once

namespace arena
{

// Runs all steps and prints each to the standard output; the last line gives the result. A failed step ends the
// demonstration and leaves no process running.
bool runDemo();

} // namespace arena
