// Records what the sockets of a thread carry, as pcapng files for wirelens and Wireshark.
//
//   host::Recording recording;
//   recording.start(system, L"zone.pcapng");
//   ...
//   recording.stop();
#pragma once

#include "framework/export.h"

#include <memory>

namespace zet
{
class System;
}

namespace host
{

namespace inner
{
class SocketRecorder;
}

// Command sockets over TCP and UDP, and net sessions: their packets after decryption and after a proxy's replies, with
// IP and TCP or UDP around them. Comments say when and how a connection was made, and why it ended. Passwords, tokens
// and the other fields of host/inner/secrets.def are masked in place, also in tunnels; all other fields are as they
// were, so the files contain personal data of players. Only the owner of the process and its group may read them.
//
// Each packet is written before it is handled, so the file is complete if the process ends abruptly; a stalled disk
// delays ticks. A full disk, or any other failure of the file, ends the recording with one line in the log, and the
// sockets go on.
//
// THREADS: all of it belongs to the thread that calls start(), whose connections are recorded; a thread has one
// recording at a time. While no thread records, a packet costs one comparison.
class COMMONGROUND_API Recording
{
public:
    static constexpr long long kMebibyte = 1024 * 1024;
    static constexpr long long kDefaultFileSize = 64 * kMebibyte;
    static constexpr long long kLeastFileSize = 64 * 1024;
    static constexpr int kDefaultFiles = 4;

    // Off.
    Recording();
    // Stops it.
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    // Before start(). A file of that many bytes is renamed to FILE.1, the one with that name to FILE.2, and so on;
    // files counts all of them. Less than kLeastFileSize, or than one file, counts as that.
    void setLimits(long long fileSize, int files);
    // Renames the files of an earlier recording as above and begins a new one. True if it runs already, to whatever
    // file. False and logged if the file cannot be written or the thread records already.
    bool start(zet::System& system, const wchar_t* path);
    // Completes the file.
    void stop();
    // False also after a failure of the file.
    bool isOn() const;

    // Packets of the present recording, or of the last one, and how many of them are not in the files: those that
    // exceed half a file, and more than 1 MiB sent by a connection before it was established.
    unsigned long long getPackets() const;
    unsigned long long getDropped() const;

private:
    long long m_FileSize = kDefaultFileSize;
    int m_Files = kDefaultFiles;
    std::unique_ptr<inner::SocketRecorder> m_Recorder;
};

} // namespace host
