// Without libpcap.
#include "tools/capture/capture_file.h"

namespace tools
{

struct CaptureFile::Inner
{
};

bool CaptureFile::isSupported()
{
    return false;
}

CaptureFile::CaptureFile(ByteSource) {}

CaptureFile::~CaptureFile() = default;

bool CaptureFile::open()
{
    m_Error = "built without libpcap";
    return false;
}

bool CaptureFile::next(CapturedPacket&)
{
    return false;
}

} // namespace tools
