// A typed handler's refused command was logged with "bytes are left over" if its Read had failed before the last byte.
// The line now follows what Read returned: a command that cannot be read does not fit its bytes.
#include "host/handlers.h"
#include "packs/envelope.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <string>

namespace
{

TEST(Bugs, ACommandThatIsNotReadDoesNotFitItsBytes)
{
    const test::LogLines lines;
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    const zet::Unknown::Handle_T<CCommandSocket> socket = CCommandSocket::createInstance(analyser.get());
    host::Handlers handlers(*analyser);
    handlers.on<CCmdHomePackRequest>([](CCommandSocket&, CCmdHomePackRequest&) { FAIL(); });
    // A payload of eight bytes, of which six are there: Read fails before them.
    const auto envelope = std::make_unique<CCmdHomePackRequest>();
    envelope->m_PackData.Write(1);
    envelope->m_PackData.Write(2);
    const auto whole = std::make_unique<CCmdPackager>();
    ASSERT_TRUE(envelope->Write(whole.get()));
    const auto cut = std::make_unique<CCmdPackager>();
    cut->SetCmdID(command_id::CCmdHomePackRequest);
    const int size = whole->GetDataSize() - 2;
    ASSERT_TRUE(cut->Write(whole->GetBuffer(), size));
    EXPECT_FALSE(analyser->Analyse(socket, *cut));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdHomePackRequest (0x%04x) refused: it does not fit %d bytes ()",
                  command_id::CCmdHomePackRequest, size);
    const auto texts = lines.texts();
    EXPECT_TRUE(std::find(texts.begin(), texts.end(), expected) != texts.end())
        << std::string(texts.front().begin(), texts.front().end());
}

} // namespace
