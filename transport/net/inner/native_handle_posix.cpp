#include "transport/net/inner/native_handle.h"

#include <unistd.h>

namespace zet::inner
{

void closeHandle(asio::ip::tcp::socket::native_handle_type handle)
{
    ::close(handle);
}

} // namespace zet::inner
