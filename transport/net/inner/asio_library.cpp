// The parts of Asio that need compiling, once for the library. Nothing of it is exported.
#include "transport/net/inner/reactor.h"

#include <asio/impl/src.hpp>
