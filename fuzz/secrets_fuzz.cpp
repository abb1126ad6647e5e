// Masking of recorded packets: any bytes, as each kind of packet. What is masked reads as a frame of the same command,
// and no text of a password is left where its class reads one.
#include "commands/account_access.h"
#include "fuzz/support/require.h"
#include "host/inner/secrets.h"
#include "packaging/cmd_packager.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace
{

using fuzz::require;
using host::inner::Carried;

bool isMasked(const zet::String_T<wchar_t>& text)
{
    const auto view = text.view();
    return std::all_of(view.begin(), view.end(), [](wchar_t c) { return c == L'*'; });
}

void checkPassword(const std::vector<unsigned char>& frame)
{
    CCmdPackager packager;
    CCmdUpdatePassword update;
    if (CCmdPackager::GetFrameSize(frame.data()) <= static_cast<long long>(frame.size()) &&
        packager.Receive(frame.data(), static_cast<int>(frame.size())) && packager.GetCmdID() == update.GetID() &&
        update.Read(&packager))
        require(isMasked(update.m_Text1) && isMasked(update.m_Text2));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::ptrdiff_t kId = 2;
    for (const Carried carried : {Carried::kStreamFrame, Carried::kDatagramFrame, Carried::kNetMessage})
    {
        std::vector<unsigned char> packet(data, data + size);
        const bool isChanged = maskSecrets(carried, packet);
        require(packet.size() == size);
        if (!isChanged)
            require(std::equal(packet.begin(), packet.end(), data));
        else if (carried != Carried::kNetMessage)
            require(std::equal(packet.begin(), packet.begin() + kId, data));
        if (carried == Carried::kStreamFrame && size >= static_cast<size_t>(CCmdPackager::kMinHeaderSize))
            checkPassword(packet);
        // Once is enough.
        std::vector<unsigned char> again = packet;
        maskSecrets(carried, again);
        require(again == packet);
    }
    return 0;
}
