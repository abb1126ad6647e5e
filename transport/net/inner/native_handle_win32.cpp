#include "transport/net/inner/native_handle.h"

namespace zet::inner
{

void closeHandle(asio::ip::tcp::socket::native_handle_type handle)
{
    ::closesocket(handle);
}

} // namespace zet::inner
